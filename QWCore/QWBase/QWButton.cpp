#include "QWButton.h"

#include <QPainter>
#include <QStyleOptionButton>

namespace
{
constexpr double cornerRadius = 6;
constexpr double ringWidth = 2; ///< Room left around the bezel for the focus ring.
constexpr int horizontalPadding = 16;
constexpr int verticalPadding = 7;
constexpr int smallestWidth = 88;

/// Strength of the white that makes up the bezel, 0 to 255.
struct QuietLook
{
    int fill;
    int edge;
    int text;
};

constexpr QuietLook disabledLook{14, 26, 96};
constexpr QuietLook normalLook{30, 58, 226};
constexpr QuietLook hoverLook{52, 84, 255};
constexpr QuietLook pressedLook{16, 84, 200};

const QuietLook &lookFor(const QStyleOptionButton &option)
{
    if (!(option.state & QStyle::State_Enabled))
        return disabledLook;
    if (option.state & (QStyle::State_Sunken | QStyle::State_On))
        return pressedLook;
    return option.state & QStyle::State_MouseOver ? hoverLook : normalLook;
}

QColor white(int strength)
{
    return QColor(255, 255, 255, strength);
}
} // namespace

class Q_DECL_HIDDEN QWButton::Private
{
public:
    static QSize _quietSize(const QWButton &button);
    static void _paintQuiet(QWButton &button);

    bool isQuiet() const { return m_bezelStyle == QuietDark; }

    int m_bezelStyle = Standard;
};

QWButton::QWButton(QWidget *parent)
    : QPushButton(parent)
    , d(std::make_unique<Private>())
{
}

QWButton::QWButton(const QString &title, QWidget *parent)
    : QPushButton(title, parent)
    , d(std::make_unique<Private>())
{
}

QWButton::~QWButton() = default;

int QWButton::bezelStyle() const
{
    return d->m_bezelStyle;
}

void QWButton::setBezelStyle(int style)
{
    d->m_bezelStyle = style;
    setAttribute(Qt::WA_Hover, style == QuietDark || testAttribute(Qt::WA_Hover));
    updateGeometry();
    update();
}

QSize QWButton::sizeHint() const
{
    return d->isQuiet() ? Private::_quietSize(*this) : QPushButton::sizeHint();
}

QSize QWButton::minimumSizeHint() const
{
    return d->isQuiet() ? Private::_quietSize(*this) : QPushButton::minimumSizeHint();
}

void QWButton::paintEvent(QPaintEvent *event)
{
    if (d->isQuiet())
        Private::_paintQuiet(*this);
    else
        QPushButton::paintEvent(event);
}

QSize QWButton::Private::_quietSize(const QWButton &button)
{
    const QSize title = button.fontMetrics().size(Qt::TextShowMnemonic, button.text());
    return QSize(title.width() + 2 * horizontalPadding, title.height() + 2 * verticalPadding)
        .expandedTo({smallestWidth, 0});
}

void QWButton::Private::_paintQuiet(QWButton &button)
{
    QStyleOptionButton option;
    button.initStyleOption(&option);
    const QuietLook &look = lookFor(option);
    const bool showsFocus = option.state & QStyle::State_HasFocus && option.state & QStyle::State_Enabled;
    const QRectF bezel = QRectF(button.rect()).adjusted(ringWidth, ringWidth, -ringWidth, -ringWidth);

    QPainter painter(&button);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(white(look.edge), 1));
    painter.setBrush(white(look.fill));
    painter.drawRoundedRect(bezel.adjusted(0.5, 0.5, -0.5, -0.5), cornerRadius, cornerRadius);
    if (showsFocus) {
        painter.setPen(QPen(button.palette().color(QPalette::Highlight).lighter(130), ringWidth));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(bezel, cornerRadius, cornerRadius);
    }
    painter.setPen(white(look.text));
    painter.drawText(bezel, Qt::AlignCenter | Qt::TextShowMnemonic, button.text());
}

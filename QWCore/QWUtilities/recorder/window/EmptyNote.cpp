#include "EmptyNote.h"

#include <QAbstractItemView>
#include <QEvent>
#include <QPainter>

#include <algorithm>

namespace qw
{

namespace
{
constexpr int pictureSize = 48;
constexpr int pictureGap = 16;
constexpr int sideMargin = 24;
constexpr int widestText = 400;
constexpr double pictureOpacity = 0.45;
} // namespace

EmptyNote::EmptyNote(QAbstractItemView &view)
    : QWidget(view.viewport())
    , m_view(view)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setObjectName("emptyNote");
    view.viewport()->installEventFilter(this);
    hide();
}

EmptyNote::~EmptyNote() = default;

void EmptyNote::show(const QIcon &picture, const QString &sentence)
{
    m_picture = picture;
    if (m_sentence != sentence) {
        m_sentence = sentence;
        m_view.setAccessibleDescription(sentence);
    }
    resize(parentWidget()->size());
    setVisible(!sentence.isEmpty());
    update();
}

bool EmptyNote::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Resize)
        resize(parentWidget()->size());
    return QWidget::eventFilter(watched, event);
}

void EmptyNote::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    QRect place(0, 0, std::min(width() - 2 * sideMargin, widestText), height());
    place.moveCenter(rect().center());
    const QRect text =
        fontMetrics().boundingRect(place, int(Qt::AlignHCenter | Qt::AlignTop | Qt::TextWordWrap), m_sentence);
    const int top = std::max(0, (height() - pictureSize - pictureGap - text.height()) / 2);
    const QRect picture((width() - pictureSize) / 2, top, pictureSize, pictureSize);
    painter.setOpacity(pictureOpacity);
    m_picture.paint(&painter, picture);
    painter.setOpacity(1);
    painter.setPen(palette().color(QPalette::PlaceholderText));
    place.setTop(picture.bottom() + pictureGap);
    painter.drawText(place, int(Qt::AlignHCenter | Qt::AlignTop | Qt::TextWordWrap), m_sentence);
}

} // namespace qw

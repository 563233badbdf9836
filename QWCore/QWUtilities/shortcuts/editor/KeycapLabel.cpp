#include "KeycapLabel.h"

#include "Keycaps.h"
#include "QWUtilities/shortcuts/QWShortcutKey.h"

#include <QWPlatform/foundation/Localization.h>

#include <QPainter>
#include <QPainterPath>

namespace qw
{

namespace
{
constexpr double textScale = 2;
constexpr double radius = 6;
constexpr double progressHeight = 3;
constexpr int padding = 16;

QFont largeFont(QFont font)
{
    font.setPointSizeF(font.pointSizeF() * textScale);
    return font;
}

QPainterPath wellOf(const QWidget &widget)
{
    QPainterPath well;
    well.addRoundedRect(QRectF(widget.rect()).adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
    return well;
}
} // namespace

KeycapLabel::KeycapLabel(QWidget *parent)
    : QLabel(parent)
{
}

KeycapLabel::~KeycapLabel() = default;

void KeycapLabel::setKey(const QWShortcutKey &key)
{
    m_texts = Keycaps::textsOf(key);
    setText(key.displayString());
    update();
}

void KeycapLabel::setProgress(double progress)
{
    if (m_progress == progress)
        return;
    m_progress = progress;
    update();
}

QSize KeycapLabel::sizeHint() const
{
    const QSize caps = Keycaps::size({"⌘"}, largeFont(font()));
    return {caps.width() * 4, caps.height() + 2 * padding};
}

void KeycapLabel::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    _paintWell(painter);
    _paintProgress(painter);
    if (!text().isEmpty())
        return Keycaps::paint(painter, rect(), Qt::AlignCenter, m_texts, largeFont(font()),
                              palette().color(QPalette::Text));
    painter.setPen(palette().color(QPalette::PlaceholderText));
    painter.drawText(rect(), Qt::AlignCenter, platform::localized("No shortcut"));
}

void KeycapLabel::_paintWell(QPainter &painter) const
{
    const QPalette::ColorRole edge = hasFocus() ? QPalette::Highlight : QPalette::Mid;
    painter.setPen(QPen(palette().color(edge), hasFocus() ? 1.5 : 1));
    painter.setBrush(palette().color(QPalette::Base));
    painter.drawPath(wellOf(*this));
}

void KeycapLabel::_paintProgress(QPainter &painter) const
{
    if (m_progress <= 0)
        return;
    painter.save();
    painter.setClipPath(wellOf(*this));
    const QRectF bar(0, height() - progressHeight, width() * m_progress, progressHeight);
    painter.fillRect(bar, palette().color(QPalette::Highlight));
    painter.restore();
}

} // namespace qw

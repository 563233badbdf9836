#include "ChainChip.h"

#include "Icons.h"

#include <QPainter>
#include <QPainterPath>

#include <algorithm>

namespace demo
{

namespace
{
constexpr int iconExtent = 20;
constexpr int margin = 12;
constexpr int gap = 10;
constexpr int chipHeight = 48;
constexpr int mostTextWidth = 200;
constexpr int leastTextWidth = 56;
} // namespace

ChainChip::ChainChip(QString iconName, const QString &title, QString note, QWidget *parent)
    : QAbstractButton(parent)
    , m_iconName(std::move(iconName))
    , m_note(std::move(note))
{
    setText(title);
    setToolTip(m_note.isEmpty() ? title : title + "\n" + m_note);
    setAccessibleName(title);
    setAccessibleDescription(m_note);
    setCheckable(true);
    setFocusPolicy(Qt::TabFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QFont ChainChip::_noteFont() const
{
    QFont small = font();
    small.setPointSizeF(small.pointSizeF() - 2);
    return small;
}

QSize ChainChip::sizeHint() const
{
    QFont bold = font();
    bold.setWeight(QFont::DemiBold);
    const int title = QFontMetrics(bold).horizontalAdvance(text());
    const int note = QFontMetrics(_noteFont()).horizontalAdvance(m_note);
    const int textWidth = std::clamp(std::max(title, note) + 2, leastTextWidth, mostTextWidth);
    return {margin + iconExtent + gap + textWidth + margin + 4, chipHeight};
}

void ChainChip::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QColor accent = palette().color(QPalette::Active, QPalette::Highlight);
    const QColor ink = palette().color(QPalette::WindowText);
    QColor edge = isChecked() || hasFocus() ? accent : ink;
    edge.setAlphaF(isChecked() || hasFocus() ? 0.9f : underMouse() ? 0.35f : 0.16f);
    QColor fill = isChecked() ? accent : palette().color(QPalette::Base);
    fill.setAlphaF(isChecked() ? 0.14f : 1.0f);
    QPainterPath outline;
    outline.addRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), 8, 8);
    painter.fillPath(outline, fill);
    painter.setPen(QPen(edge, hasFocus() ? 2 : 1.25));
    painter.drawPath(outline);
    painter.drawPixmap(QPointF(margin, (chipHeight - iconExtent) / 2.0),
                       linePicture(m_iconName, isChecked() ? accent : ink, iconExtent, devicePixelRatioF()));
    _paintWords(painter, ink);
}

void ChainChip::_paintWords(QPainter &painter, const QColor &ink) const
{
    const QRect words = rect().adjusted(margin + iconExtent + gap, 6, -margin, -6);
    QFont bold = font();
    bold.setWeight(QFont::DemiBold);
    painter.setFont(bold);
    painter.setPen(ink);
    const Qt::Alignment titleAlignment = Qt::AlignLeft | (m_note.isEmpty() ? Qt::AlignVCenter : Qt::AlignTop);
    painter.drawText(words, titleAlignment, painter.fontMetrics().elidedText(text(), Qt::ElideRight, words.width()));
    painter.setFont(_noteFont());
    QColor quiet = ink;
    quiet.setAlphaF(0.65f);
    painter.setPen(quiet);
    painter.drawText(words, Qt::AlignLeft | Qt::AlignBottom,
                     painter.fontMetrics().elidedText(m_note, Qt::ElideRight, words.width()));
}

} // namespace demo

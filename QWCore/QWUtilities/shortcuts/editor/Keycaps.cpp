#include "Keycaps.h"

#include "QWUtilities/shortcuts/QWShortcutKey.h"
#include "QWUtilities/shortcuts/model/ShortcutGlyphs.h"

#include <QWPlatform/appkit/menus/KeyEquivalent.h>

#include <QFontMetrics>
#include <QPainter>
#include <QStyle>

namespace qw::Keycaps
{

namespace
{
constexpr qreal faceOpacity = 0.05;
constexpr qreal edgeOpacity = 0.22;

QColor shade(QColor ink, qreal opacity)
{
    ink.setAlphaF(float(ink.alphaF() * opacity));
    return ink;
}

/// All lengths grow with the font.
int heightOf(const QFontMetrics &metrics)
{
    return metrics.height() + metrics.height() / 4;
}

int gapOf(const QFontMetrics &metrics)
{
    return qMax(2, metrics.height() / 6);
}

/// Caps of one glyph are square.
int widthOf(const QString &text, const QFontMetrics &metrics)
{
    return qMax(heightOf(metrics), metrics.horizontalAdvance(text) + metrics.height() * 2 / 3);
}

void paintCap(QPainter &painter, const QRect &cap, const QString &text, const QColor &ink)
{
    const qreal radius = cap.height() / 5.0;
    painter.setPen(QPen(shade(ink, edgeOpacity), 1));
    painter.setBrush(shade(ink, faceOpacity));
    painter.drawRoundedRect(QRectF(cap).adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
    painter.setPen(ink);
    painter.drawText(cap, Qt::AlignCenter, text);
}
} // namespace

QStringList textsOf(const QWShortcutKey &key)
{
    QStringList texts;
    if (key.isClear())
        return texts;
    const QString modifiers = modifierGlyphs(key.modifiers());
    for (const QChar glyph : modifiers)
        texts.append(glyph);
    texts.append(keyText(key.character(), key.modifiers()));
    return texts;
}

QString spokenText(const QWShortcutKey &key)
{
    return key.isClear() ? QString() : platform::KeyEquivalent::text(QChar(key.character()), key.modifiers());
}

QSize size(const QStringList &texts, const QFont &font)
{
    const QFontMetrics metrics(font);
    int width = 0;
    for (const QString &text : texts)
        width += widthOf(text, metrics) + (width ? gapOf(metrics) : 0);
    return {width, heightOf(metrics)};
}

void paint(QPainter &painter, const QRect &room, Qt::Alignment alignment, const QStringList &texts, const QFont &font,
           const QColor &ink)
{
    const QFontMetrics metrics(font);
    const QRect row = QStyle::alignedRect(Qt::LeftToRight, alignment, size(texts, font), room);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setFont(font);
    int x = row.left();
    for (const QString &text : texts) {
        const QRect cap(x, row.top(), widthOf(text, metrics), row.height());
        paintCap(painter, cap, text, ink);
        x += cap.width() + gapOf(metrics);
    }
    painter.restore();
}

} // namespace qw::Keycaps

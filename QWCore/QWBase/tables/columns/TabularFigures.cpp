#include "TabularFigures.h"

#include <QFontMetricsF>
#include <QPainter>

#include <algorithm>

namespace qw
{

namespace
{
constexpr double sameWidth = 0.01; ///< Pixels.

bool isFigure(QChar character)
{
    return character >= '0' && character <= '9';
}

bool differ(const TabularFigures::Advance &advance)
{
    const double widest = TabularFigures::digitWidth(advance);
    for (char digit = '0'; digit <= '9'; ++digit)
        if (widest - advance(QLatin1Char(digit)) > sameWidth)
            return true;
    return false;
}
} // namespace

TabularFigures::TabularFigures(const QFont &font)
    : m_font(font)
    , m_isNeeded(differ(_advance()))
{
}

TabularFigures::Advance TabularFigures::_advance() const
{
    return [metrics = QFontMetricsF(m_font)](QChar character) { return metrics.horizontalAdvance(character); };
}

double TabularFigures::width(const QString &text) const
{
    return positions(text, _advance()).last();
}

void TabularFigures::drawAtRight(QPainter &painter, const QRectF &place, const QString &text) const
{
    const QFontMetricsF metrics(m_font);
    const QList<double> starts = positions(text, _advance());
    const double left = place.right() - starts.last();
    const double baseline = place.center().y() + (metrics.ascent() - metrics.descent()) / 2;
    painter.setFont(m_font);
    for (qsizetype i = 0; i < text.size(); ++i)
        painter.drawText(QPointF(left + starts[i], baseline), QString(text[i]));
}

bool TabularFigures::canDraw(const QString &text)
{
    return std::all_of(text.begin(), text.end(), [](QChar character) { return character.unicode() < 0x100; });
}

QList<double> TabularFigures::positions(const QString &text, const Advance &advance)
{
    const double room = digitWidth(advance);
    QList<double> starts;
    double x = 0;
    for (const QChar character : text) {
        const double width = advance(character);
        starts.append(isFigure(character) ? x + (room - width) / 2 : x);
        x += isFigure(character) ? room : width;
    }
    starts.append(x);
    return starts;
}

double TabularFigures::digitWidth(const Advance &advance)
{
    double widest = 0;
    for (char digit = '0'; digit <= '9'; ++digit)
        widest = std::max(widest, advance(QLatin1Char(digit)));
    return widest;
}

} // namespace qw

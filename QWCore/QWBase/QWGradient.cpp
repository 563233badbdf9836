#include "QWGradient.h"

#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace
{
constexpr double almostNothing = 1e-6; ///< Keeps two stops of Qt's gradient apart.

double mixed(double from, double to, double part)
{
    return from + (to - from) * part;
}

QColor mixed(const QColor &from, const QColor &to, double part)
{
    return QColor::fromRgbF(float(mixed(from.redF(), to.redF(), part)), float(mixed(from.greenF(), to.greenF(), part)),
                            float(mixed(from.blueF(), to.blueF(), part)),
                            float(mixed(from.alphaF(), to.alphaF(), part)));
}

/// The way @p part (0 to 1) between two stops as a share of colour: half at the midpoint, even on either side of it.
double share(double part, double midpoint)
{
    if (part < midpoint)
        return 0.5 * part / midpoint;
    return midpoint < 1 ? 0.5 + 0.5 * (part - midpoint) / (1 - midpoint) : 0.5;
}
} // namespace

QWGradient::QWGradient(const QColor &start, const QColor &end)
    : m_stops{{start, 0, 0.5}, {end, 1, 0.5}}
{
}

void QWGradient::addStop(const QWGradientStop &stop)
{
    QWGradientStop added = stop;
    added.position = std::clamp(stop.position, 0.0, 1.0);
    added.midpoint = std::clamp(stop.midpoint, 0.0, 1.0);
    const auto place = std::upper_bound(m_stops.begin(), m_stops.end(), added, [](const auto &left, const auto &right) {
        return left.position < right.position;
    });
    m_stops.insert(place, added);
}

void QWGradient::setMidpointOfStop(int index, double midpoint)
{
    m_stops.at(size_t(index)).midpoint = std::clamp(midpoint, 0.0, 1.0);
}

QColor QWGradient::colorAt(double position) const
{
    const auto after = std::find_if(m_stops.begin(), m_stops.end(),
                                    [&](const QWGradientStop &stop) { return stop.position > position; });
    if (after == m_stops.begin())
        return after->color;
    const QWGradientStop &from = *(after - 1);
    if (after == m_stops.end())
        return from.color;
    const double part = (position - from.position) / (after->position - from.position);
    return mixed(from.color, after->color, share(part, from.midpoint));
}

QLinearGradient QWGradient::linearGradient(const QRectF &rect, double angle) const
{
    const double radians = angle * std::numbers::pi / 180;
    const QPointF direction(std::cos(radians), -std::sin(radians)); // Qt's y axis points down
    const double reach = (std::abs(direction.x()) * rect.width() + std::abs(direction.y()) * rect.height()) / 2;
    QLinearGradient gradient(rect.center() - direction * reach, rect.center() + direction * reach);
    gradient.setStops(_colorStops());
    return gradient;
}

void QWGradient::drawInPathAngle(QPainter &painter, const QPainterPath &path, double angle) const
{
    painter.fillPath(path, linearGradient(path.boundingRect(), angle));
}

void QWGradient::drawInRectAngle(QPainter &painter, const QRectF &rect, double angle) const
{
    painter.fillRect(rect, linearGradient(rect, angle));
}

/// Qt's gradients know no midpoints: one that is off the middle becomes a stop of its own.
QGradientStops QWGradient::_colorStops() const
{
    QGradientStops stops;
    const auto add = [&](double position, const QColor &color) {
        // Qt replaces a stop at the same position, which would lose a hard edge.
        const double previous = stops.isEmpty() ? -1 : stops.back().first;
        stops.append({std::min(1.0, std::max(position, previous + almostNothing)), color});
    };
    for (size_t i = 0; i < m_stops.size(); ++i) {
        const QWGradientStop &stop = m_stops[i];
        add(stop.position, stop.color);
        if (i + 1 == m_stops.size() || stop.midpoint == 0.5)
            continue;
        const QWGradientStop &next = m_stops[i + 1];
        add(mixed(stop.position, next.position, stop.midpoint), mixed(stop.color, next.color, 0.5));
    }
    return stops;
}

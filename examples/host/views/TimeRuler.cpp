#include "TimeRuler.h"

#include "Wording.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace demo
{

namespace
{
constexpr double steps[] = {0.001, 0.002, 0.005, 0.01, 0.02, 0.05, 0.1, 0.2, 0.5,  1,    2,   5,
                            10,    15,    30,    60,   120,  300,  600, 900, 1800, 3600, 7200};
constexpr int minorTicks = 5;
} // namespace

TimeRuler::TimeRuler(QWidget *parent)
    : QWidget(parent)
{
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void TimeRuler::setRange(const TimeRange &range)
{
    m_range = {range.begin, std::max(range.end, range.begin + 0.001)};
    update();
}

QSize TimeRuler::sizeHint() const
{
    return {200, fontMetrics().height() + 8};
}

double TimeRuler::stepFor(double seconds, double labels)
{
    const auto *found = std::ranges::find_if(steps, [&](double step) { return seconds / step <= labels; });
    return found == std::end(steps) ? steps[std::size(steps) - 1] : *found;
}

void TimeRuler::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    QFont small = font();
    small.setPointSizeF(small.pointSizeF() - 2);
    painter.setFont(small);
    QColor ink = palette().color(QPalette::WindowText);
    ink.setAlphaF(0.6f);
    const double step = stepFor(m_range.length(), width() / 88.0);
    const double pixels = width() / m_range.length();
    const auto firstTick = static_cast<qint64>(std::ceil(m_range.begin * minorTicks / step));
    for (qint64 tick = firstTick; static_cast<double>(tick) * step / minorTicks <= m_range.end; ++tick) {
        const double seconds = static_cast<double>(tick) * step / minorTicks;
        const double x = std::min(std::floor((seconds - m_range.begin) * pixels) + 0.5, width() - 0.5);
        const bool major = tick % minorTicks == 0;
        ink.setAlphaF(major ? 0.45f : 0.2f);
        painter.setPen(ink);
        painter.drawLine(QPointF(x, height() - (major ? 8 : 4)), QPointF(x, height()));
        const QString label = Wording::rulerTime(seconds, step);
        if (!major || x + 5 + painter.fontMetrics().horizontalAdvance(label) > width())
            continue;
        ink.setAlphaF(0.7f);
        painter.setPen(ink);
        painter.drawText(QPointF(x + 5, height() - 7), label);
    }
}

} // namespace demo

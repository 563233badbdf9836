#include "Viewport.h"

#include <algorithm>
#include <utility>

namespace demo
{

TimeRange Viewport::_cut(const TimeRange &range) const
{
    return {std::clamp(range.begin, 0.0, m_duration), std::clamp(range.end, 0.0, m_duration)};
}

void Viewport::setDuration(double seconds)
{
    const bool all = showsAll();
    m_duration = std::max(seconds, 0.0);
    setVisible(all ? TimeRange{0, m_duration} : m_visible);
    setSelection(m_selection);
    const double position = std::min(m_position, m_duration);
    if (position != std::exchange(m_position, position))
        Q_EMIT positionChanged(m_position);
}

void Viewport::setVisible(const TimeRange &range)
{
    const double length = std::min(std::max(range.length(), shortestVisible), m_duration);
    const double begin = std::clamp(range.begin, 0.0, m_duration - length);
    const TimeRange visible{begin, begin + length};
    if (visible == m_visible)
        return;
    m_visible = visible;
    Q_EMIT visibleChanged();
}

void Viewport::setSelection(const TimeRange &range)
{
    TimeRange selection = _cut(range);
    if (selection.isEmpty())
        selection = {};
    if (selection == m_selection)
        return;
    m_selection = selection;
    Q_EMIT selectionChanged();
}

void Viewport::setPosition(double seconds)
{
    m_position = std::clamp(seconds, 0.0, m_duration);
    if (!m_visible.contains(m_position)) {
        const double begin = m_position < m_visible.begin ? m_position : m_position - m_visible.length();
        setVisible({begin, begin + m_visible.length()});
    }
    Q_EMIT positionChanged(m_position);
}

void Viewport::zoom(double factor)
{
    const double middle = (m_visible.begin + m_visible.end) / 2;
    const double fixed = m_visible.contains(m_position) ? m_position : middle;
    const double length = std::max(m_visible.length() / factor, shortestVisible);
    const double left = m_visible.isEmpty() ? 0 : (fixed - m_visible.begin) / m_visible.length();
    const double begin = fixed - left * length;
    setVisible({begin, begin + length});
}

void Viewport::scroll(double part)
{
    const double way = part * m_visible.length();
    setVisible({m_visible.begin + way, m_visible.end + way});
}

} // namespace demo

#include "DownloadReport.h"

#include <utility>

namespace platform
{

void DownloadReport::tell(const DownloadEvent &event)
{
    const std::lock_guard lock(m_mutex);
    const bool hasMore = !m_events.empty();
    const bool adds = hasMore && event.kind == DownloadEvent::Kind::Data && m_events.back().kind == event.kind;
    if (adds)
        m_events.back().length += event.length;
    else
        m_events.push_back(event);
    if (!hasMore)
        Q_EMIT told();
}

std::optional<DownloadEvent> DownloadReport::next()
{
    const std::lock_guard lock(m_mutex);
    if (m_events.empty())
        return std::nullopt;
    DownloadEvent event = std::move(m_events.front());
    m_events.pop_front();
    return event;
}

} // namespace platform

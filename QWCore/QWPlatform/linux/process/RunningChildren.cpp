#include "RunningChildren.h"

#include <csignal>

namespace platform
{

void RunningChildren::add(pid_t child)
{
    const std::lock_guard guard(m_mutex);
    m_children.push_back(child);
    if (m_hasEnded)
        ::kill(-child, SIGKILL);
}

void RunningChildren::remove(pid_t child)
{
    const std::lock_guard guard(m_mutex);
    std::erase(m_children, child);
}

void RunningChildren::endAll()
{
    const std::lock_guard guard(m_mutex);
    m_hasEnded = true;
    for (const pid_t child : m_children)
        ::kill(-child, SIGKILL);
}

bool RunningChildren::hasEnded() const
{
    const std::lock_guard guard(m_mutex);
    return m_hasEnded;
}

} // namespace platform

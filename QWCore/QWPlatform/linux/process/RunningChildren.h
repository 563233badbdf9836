#pragma once

#include <mutex>
#include <sys/types.h>
#include <vector>

namespace platform
{

/// The children that somebody waits for, so that they can be ended together. Any thread.
class RunningChildren
{
public:
    /// To be called with a child that nobody has reaped; one that comes after endAll() is ended at once.
    void add(pid_t child);

    /// Before the child is reaped: from then on its id may be somebody else's.
    void remove(pid_t child);

    /// Ends all, with their process groups.
    void endAll();

    bool hasEnded() const;

private:
    mutable std::mutex m_mutex; ///< Guards what follows.
    std::vector<pid_t> m_children;
    bool m_hasEnded = false;
};

} // namespace platform

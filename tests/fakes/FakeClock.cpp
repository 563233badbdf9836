#include "FakeClock.h"

using namespace std::chrono_literals;

qint64 FakeClock::monotonicNanoseconds() const
{
    const std::lock_guard guard(m_mutex);
    return m_elapsed;
}

void FakeClock::sleep(std::chrono::nanoseconds time, std::stop_token stop)
{
    if (std::this_thread::get_id() == m_test) {
        advance(time);
        return;
    }
    std::unique_lock lock(m_mutex);
    const auto waking = m_wakingTimes.insert(m_elapsed + time.count());
    m_changed.notify_all();
    m_changed.wait(lock, stop, [&] { return m_elapsed >= *waking; });
    m_wakingTimes.erase(waking);
}

void FakeClock::advance(std::chrono::nanoseconds time)
{
    const std::lock_guard guard(m_mutex);
    m_elapsed += time.count();
    m_changed.notify_all();
}

bool FakeClock::waitForSleepers(std::size_t count)
{
    std::unique_lock lock(m_mutex);
    return m_changed.wait_for(lock, 10s, [&] { return _sleepers() == count; });
}

/// Those whose time has come sleep no longer, though they may not run yet.
std::size_t FakeClock::_sleepers() const
{
    return static_cast<std::size_t>(std::distance(m_wakingTimes.upper_bound(m_elapsed), m_wakingTimes.end()));
}

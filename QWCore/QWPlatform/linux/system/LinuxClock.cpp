#include "LinuxClock.h"

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

namespace platform
{

namespace
{
constexpr auto shortRest = std::chrono::milliseconds(5); ///< Not worth the trouble of ending early.
}

QDateTime LinuxClock::now() const
{
    return QDateTime::currentDateTime();
}

qint64 LinuxClock::monotonicNanoseconds() const
{
    return std::chrono::duration_cast<std::chrono::nanoseconds>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

void LinuxClock::sleep(std::chrono::nanoseconds time, std::stop_token stop)
{
    if (time <= shortRest || !stop.stop_possible()) {
        std::this_thread::sleep_for(time);
        return;
    }
    std::mutex mutex;
    std::condition_variable_any nobody;
    std::unique_lock lock(mutex);
    nobody.wait_for(lock, stop, time, [] { return false; });
}

} // namespace platform

#include "LinuxClock.h"

#include <chrono>

namespace platform
{

QDateTime LinuxClock::now() const
{
    return QDateTime::currentDateTime();
}

qint64 LinuxClock::monotonicNanoseconds() const
{
    return std::chrono::duration_cast<std::chrono::nanoseconds>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

} // namespace platform

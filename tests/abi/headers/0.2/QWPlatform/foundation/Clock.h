#pragma once

#include <QWPlatform/qwplatform_export.h>

#include <QDateTime>

#include <chrono>
#include <stop_token>

namespace platform
{

/// What time it is. Any thread.
class QWPLATFORM_EXPORT Clock
{
public:
    virtual ~Clock();

    /// Wall clock, local time zone.
    virtual QDateTime now() const = 0;

    /// Steady clock, nanoseconds since an arbitrary moment.
    virtual qint64 monotonicNanoseconds() const = 0;

    /// Lets the calling thread rest for @p time; a request to stop ends a longer rest early.
    virtual void sleep(std::chrono::nanoseconds time, std::stop_token stop = {}) = 0;
};

} // namespace platform

#pragma once

#include <QWPlatform/qwplatform_export.h>

#include <QDateTime>

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
};

} // namespace platform

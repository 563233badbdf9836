#pragma once

#include "HidEvent.h"

#include <QWPlatform/qwplatform_private.h>

#include <optional>

namespace platform
{

/// @p target and @p refcon are what was given with the callback; @p result is 0 for success; @p sender is what calls.
using HidCallback = void (*)(void *target, qint32 result, void *refcon, void *sender);

/// Events of one device, in order of arrival. The operations come in the order in which they stand here, all on one
/// thread, and none but the destructor after one that failed. Destroying the queue disposes of it, and may happen
/// inside its own callback.
class QWPLATFORM_SHARED_EXPORT HidQueue
{
public:
    virtual ~HidQueue();

    /// Makes room for @p depth events; what comes while all of it is taken is dropped.
    virtual bool create(int depth) = 0;

    /// From start() on, events of the element with this cookie are kept.
    virtual bool addElement(quint32 cookie) = 0;

    virtual bool createAsyncEventSource() = 0;

    /// @p callback runs with result 0 once events have come, on the thread of addSourceToRunLoop(). It is to take them
    /// all: it is not called again for those that it leaves.
    virtual bool setEventCallout(HidCallback callback, void *target, void *refcon) = 0;

    /// The current thread's event loop serves the queue from now on.
    virtual void addSourceToRunLoop() = 0;

    virtual bool start() = 0;

    /// No event is added after this; harmless when not started.
    virtual void stop() = 0;

    /// Between a start() that succeeded and stop().
    virtual bool isStarted() const = 0;

    /// Takes the oldest event out, without waiting; none when there is none.
    virtual std::optional<HidEvent> nextEvent() = 0;
};

} // namespace platform

#pragma once

#include "HidQueue.h"

#include <QWPlatform/qwplatform_private.h>

#include <QVariantList>

namespace platform
{

/// A HID device that can be held and listened to. One thread.
class QWPLATFORM_SHARED_EXPORT HidInterface
{
public:
    virtual ~HidInterface(); ///< Closes first.

    /// From now on nobody else gets the device's input, the desktop included. False when somebody else holds it.
    virtual bool openExclusively() = 0;

    /// Gives the device back; harmless when it is not open.
    virtual void close() = 0;

    /// Top-level elements of the device, each a dictionary whose "Elements" is the array of its child elements, which
    /// have an "ElementCookie" each. None when the device does not tell.
    virtual std::optional<QVariantList> copyMatchingElements() = 0;

    /// Null on failure. The queue may outlive the interface, but gets no events without it.
    virtual std::unique_ptr<HidQueue> allocateQueue() = 0;

    /// @p callback runs once when a device whose queue was started has gone, after the queue's callout with its last
    /// events. It may destroy the queue and the interface.
    virtual void setRemovalCallback(HidCallback callback, void *target, void *refcon) = 0;
};

} // namespace platform

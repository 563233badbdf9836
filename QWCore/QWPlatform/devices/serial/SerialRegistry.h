#pragma once

#include <QWPlatform/qwplatform_private.h>

#include <QString>

#include <vector>

namespace platform
{

/// A serial device, as the registry knows it while it is plugged in.
struct SerialService
{
    QString key;          ///< Tells devices apart; not used again after the device has gone.
    QString dialInDevice; ///< Path under which the device is opened, such as "/dev/tty.usbserial-m64-0123".
    QString advice;       ///< A sentence for the log when something keeps applications from the device; may be empty.
};

/// Told of serial devices, on the main thread.
class QWPLATFORM_SHARED_EXPORT SerialRegistryClient
{
public:
    /// The message that a device has gone for good.
    static constexpr quint32 serviceIsTerminated = 0xE0000010;

    virtual ~SerialRegistryClient();

    /// Devices that came after addMatchingNotification() had returned.
    virtual void serialServicesMatched(const std::vector<SerialService> &services) = 0;

    /// News of a device for which an interest was registered; most messages are of no importance.
    virtual void serialServiceMessage(const SerialService &service, quint32 messageType) = 0;
};

/// The list of serial devices, with notifications. Main thread; clients are called from its event loop only.
class QWPLATFORM_SHARED_EXPORT SerialRegistry
{
public:
    /// Names an interest until it is released; never 0.
    using Handle = quint64;

    virtual ~SerialRegistry();

    /// The devices that are there; @p client, which is not owned, hears of those that come from now on.
    virtual std::vector<SerialService> addMatchingNotification(SerialRegistryClient &client) = 0;

    /// @p client hears what happens to @p service until the handle is released.
    virtual Handle addInterestNotification(const SerialService &service, SerialRegistryClient &client) = 0;

    /// Releasing 0 or a handle that was released does nothing.
    virtual void releaseNotification(Handle handle) = 0;

    /// Ends all that @p client registered.
    virtual void removeClient(SerialRegistryClient &client) = 0;
};

} // namespace platform

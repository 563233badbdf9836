#pragma once

#include <QWPlatform/qwplatform_private.h>

#include <functional>

#include <QStringList>

namespace platform
{

/// Gives up a session bus that lets nobody in within 2 s: this process and its children are then without one. Qt would
/// wait for it, at the start, for minutes. Before the application object is made.
QWPLATFORM_SHARED_EXPORT void giveUpSilentBus();

/// Reaches a running instance of the same host over the session bus. Main thread.
class QWPLATFORM_SHARED_EXPORT InstanceLink
{
public:
    virtual ~InstanceLink();

    /// Becomes the instance that URLs are handed to, when no other one is. @p received is called from the event loop
    /// with each URL that another instance hands over. False: another instance runs, or there is no bus.
    virtual bool listen(const QString &bundleIdentifier, std::function<void(const QString &url)> received) = 0;

    /// Hands @p urls to the running instance and brings it to the front; false when there is none, or no bus.
    virtual bool handOver(const QString &bundleIdentifier, const QStringList &urls) = 0;
};

} // namespace platform

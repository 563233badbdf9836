#pragma once

#include <QWPlatform/qwplatform_private.h>

#include <QByteArray>
#include <QList>
#include <QString>
#include <QVariantMap>

#include <chrono>

namespace platform
{

class NetService;

/// Told what became of a service's resolution. Main thread, from the event loop only. May release the service in any
/// of the calls.
class QWPLATFORM_SHARED_EXPORT NetServiceDelegate
{
public:
    virtual ~NetServiceDelegate();

    /// netServiceDidResolveAddress: NetService::addresses() and port() are known.
    virtual void netServiceDidResolveAddress(NetService &service);

    /// netService:didNotResolve: nobody answered in time, or the daemon is not there. @p errors is for the log.
    virtual void netServiceDidNotResolve(NetService &service, const QVariantMap &errors);
};

/// A service that is announced on the local network. It is the same as another when name, type and domain are, on
/// whichever interfaces it is announced. Main thread. Destroying it ends its resolution; nobody hears of that.
class QWPLATFORM_SHARED_EXPORT NetService
{
public:
    virtual ~NetService();

    virtual QString name() const = 0;   ///< As a person named it, "Vesk on Studio".
    virtual QString type() const = 0;   ///< With a dot at its end, "_http._tcp.".
    virtual QString domain() const = 0; ///< With a dot at its end, "local.".

    /// Not owned; null for none. Clear it before the delegate goes.
    virtual void setDelegate(NetServiceDelegate *delegate) = 0;

    /// Looks for host and port; the delegate hears once what came of it, at the latest after @p timeout. Asking anew
    /// starts anew.
    virtual void resolveWithTimeout(std::chrono::milliseconds timeout) = 0;

    /// Socket addresses as raw bytes (struct sockaddr_in or sockaddr_in6, network byte order inside), those of IPv4
    /// first; empty before it is resolved.
    virtual QList<QByteArray> addresses() const = 0;

    /// In host byte order; -1 before it is resolved.
    virtual int port() const = 0;
};

/// Name, type and domain are equal.
QWPLATFORM_SHARED_EXPORT bool isSameService(const NetService &one, const NetService &other);

} // namespace platform

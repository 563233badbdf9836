#pragma once

#include <QWPlatform/qwplatform_private.h>

#include <QString>
#include <QVariantMap>

#include <memory>

namespace platform
{

class NetService;
class NetServiceBrowser;

/// Told which services come and go. Main thread, from the event loop only. May stop or destroy the browser in any of
/// the calls.
class QWPLATFORM_SHARED_EXPORT NetServiceBrowserDelegate
{
public:
    virtual ~NetServiceBrowserDelegate();

    /// netServiceBrowser:didFindService:moreComing: @p moreComing: further calls follow at once, so a view can wait.
    virtual void netServiceBrowserDidFindService(NetServiceBrowser &browser, const std::shared_ptr<NetService> &service,
                                                 bool moreComing);

    /// netServiceBrowser:didRemoveService:moreComing: the service has gone from all interfaces. @p service is the one
    /// that was found, or one that isSameService().
    virtual void netServiceBrowserDidRemoveService(NetServiceBrowser &browser,
                                                   const std::shared_ptr<NetService> &service, bool moreComing);

    /// netServiceBrowser:didNotSearch: there is nobody to ask, he does not answer within some seconds, or he has gone;
    /// the browser tells nothing more until it searches again. Not told where the environment lists services: these are
    /// found without anybody. @p errors is for the log.
    virtual void netServiceBrowserDidNotSearch(NetServiceBrowser &browser, const QVariantMap &errors);
};

/// Looks for announced services of one type. Destroying it stops it. Main thread.
class QWPLATFORM_SHARED_EXPORT NetServiceBrowser
{
public:
    virtual ~NetServiceBrowser();

    /// Not owned; null for none. Clear it before the delegate goes.
    virtual void setDelegate(NetServiceBrowserDelegate *delegate) = 0;

    /// Searches until stop(), anew if it did already: @p type such as "_http._tcp.", @p domain such as "local.". Each
    /// service that is announced is told once, however many interfaces it comes on.
    virtual void searchForServicesOfTypeInDomain(const QString &type, const QString &domain) = 0;

    /// The delegate hears nothing more. Services that were found stay as they are.
    virtual void stop() = 0;
};

} // namespace platform

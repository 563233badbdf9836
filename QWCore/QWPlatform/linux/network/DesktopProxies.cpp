#include "DesktopProxies.h"

#include "QWPlatform/network/transfers/Proxies.h"

#include <QHostAddress>
#include <QNetworkProxy>
#include <QNetworkProxyFactory>
#include <QUrl>

#include <algorithm>
#include <iterator>

namespace platform
{

namespace
{
constexpr const char *proxyVariables[] = {"http_proxy", "https_proxy", "ftp_proxy", "socks_proxy", "all_proxy"};
constexpr auto thisMachine = "localhost,127.0.0.0/8,127.0.0.1,::1";

bool isThisMachine(const QString &host)
{
    return host == u"localhost" || host.endsWith(u".localhost") || QHostAddress(host).isLoopback();
}

constexpr const char *localNetworks[] = {"10.0.0.0/8",     "172.16.0.0/12", "192.168.0.0/16",
                                         "169.254.0.0/16", "fc00::/7",      "fe80::/10"};

/// A number that only machines of this network can have: no proxy knows better whose it is here. What announces itself
/// is reached by such.
bool isOfLocalNetwork(const QString &host)
{
    const QHostAddress address(host);
    return std::any_of(std::begin(localNetworks), std::end(localNetworks),
                       [&](const char *network) { return address.isInSubnet(QHostAddress::parseSubnet(network)); });
}

bool namesProxies()
{
    return std::any_of(std::begin(proxyVariables), std::end(proxyVariables), [](const char *name) {
        return !qEnvironmentVariableIsEmpty(name) ||
               !qEnvironmentVariableIsEmpty(QByteArray(name).toUpper().constData());
    });
}

/// In the environment nobody writes what goes without saying. Without a proxy the variable stays unset: set alone, it
/// counts as the user's wish for none. Either spelling may be the user's, and readers look no further than the first.
void exceptThisMachine()
{
    const QByteArray lower = qgetenv("no_proxy");
    const QByteArray upper = qgetenv("NO_PROXY");
    const auto set = [](const char *name, const QByteArray &exceptions) {
        if (!exceptions.contains(thisMachine))
            qputenv(name, exceptions.isEmpty() ? QByteArray(thisMachine) : exceptions + ',' + thisMachine);
    };
    set("no_proxy", lower.isEmpty() ? upper : lower);
    set("NO_PROXY", upper.isEmpty() ? lower : upper);
}
} // namespace

void useDesktopProxies()
{
    if (namesProxies())
        exceptThisMachine();
    QNetworkProxyFactory::setUseSystemConfiguration(true);
}

QNetworkProxy proxyFor(const QUrl &url)
{
    if (isThisMachine(url.host()) || isOfLocalNetwork(url.host()))
        return QNetworkProxy::NoProxy;
    const QNetworkProxyQuery query(url);
    // Not through Qt's own door, which holds a lock that the whole process needs while the desktop is asked.
    const QList<QNetworkProxy> proxies = QNetworkProxyFactory::usesSystemConfiguration()
                                             ? QNetworkProxyFactory::systemProxyForQuery(query)
                                             : QNetworkProxyFactory::proxyForQuery(query);
    return proxies.isEmpty() ? QNetworkProxy(QNetworkProxy::NoProxy) : proxies.front();
}

} // namespace platform

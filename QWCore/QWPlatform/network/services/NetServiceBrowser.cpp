#include "NetServiceBrowser.h"

namespace platform
{

NetServiceBrowserDelegate::~NetServiceBrowserDelegate() = default;
void NetServiceBrowserDelegate::netServiceBrowserDidFindService(NetServiceBrowser &,
                                                                const std::shared_ptr<NetService> &, bool)
{
}
void NetServiceBrowserDelegate::netServiceBrowserDidRemoveService(NetServiceBrowser &,
                                                                  const std::shared_ptr<NetService> &, bool)
{
}
void NetServiceBrowserDelegate::netServiceBrowserDidNotSearch(NetServiceBrowser &, const QVariantMap &) {}

NetServiceBrowser::~NetServiceBrowser() = default;

} // namespace platform

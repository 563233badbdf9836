#pragma once

#include <QWPlatform/qwplatform_private.h>

namespace platform
{

/// From now on everything that this process asks of the network, web views included, goes through the proxies that the
/// user set in the desktop or in the environment ("http_proxy", "https_proxy", "no_proxy", …); this machine itself is
/// always reached directly, private and link-local addresses written as numbers by all but web views. A host may choose
/// otherwise afterwards, by QNetworkProxy and QNetworkProxyFactory. Main thread, before any other thread runs.
QWPLATFORM_SHARED_EXPORT void useDesktopProxies();

} // namespace platform

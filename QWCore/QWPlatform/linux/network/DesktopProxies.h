#pragma once

#include <QWPlatform/qwplatform_export.h>

class QNetworkProxy;
class QUrl;

namespace platform
{

/// Which proxy leads to @p url: the application's, which useDesktopProxies() makes those of the desktop; none for this
/// machine itself. Any thread; may block for long.
QNetworkProxy proxyFor(const QUrl &url);

} // namespace platform

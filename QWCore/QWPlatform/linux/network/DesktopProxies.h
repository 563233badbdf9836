#pragma once

#include <QWPlatform/qwplatform_private.h>

class QNetworkProxy;
class QUrl;

namespace platform
{

/// Which proxy leads to @p url: the application's, which useDesktopProxies() makes those of the desktop; none for this
/// machine itself, and for private and link-local addresses written as numbers. Any thread; may block for long.
QWPLATFORM_TEST_EXPORT QNetworkProxy proxyFor(const QUrl &url);

} // namespace platform

#pragma once

#include <QWPlatform/qwplatform_private.h>

#include <QByteArray>
#include <QString>

namespace platform
{

/// The raw bytes of a socket address as NetService::addresses() gives them: struct sockaddr_in for "192.0.2.7",
/// struct sockaddr_in6 for "2001:db8::7". None for a text that is no address of four numbers, or of IPv6.
QWPLATFORM_TEST_EXPORT QByteArray socketAddress(const QString &text, int port);

} // namespace platform

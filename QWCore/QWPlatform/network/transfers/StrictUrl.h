#pragma once

#include <QWPlatform/qwplatform_private.h>

#include <QUrl>

namespace platform
{

/// @p text as a URL, with nothing in it escaped or mended: an invalid URL when it holds what RFC 3986 does not allow
/// there, such as a space, a character that is not ASCII, a "%" without two hexadecimal digits, or brackets beyond an
/// address. QUrl by itself escapes these. Any thread.
QWPLATFORM_SHARED_EXPORT QUrl urlAsItStands(const QString &text);

} // namespace platform

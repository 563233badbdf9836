#pragma once

#include <QWPlatform/qwplatform_private.h>

#include <QByteArrayView>
#include <QString>

namespace platform
{

/// The text in @p utf8. A byte-order mark at its beginning, which Qt would drop, is a character like any other: in the
/// name of a file it is part of what the file is found by. Any thread.
QWPLATFORM_SHARED_EXPORT QString textOfUtf8(QByteArrayView utf8);

} // namespace platform

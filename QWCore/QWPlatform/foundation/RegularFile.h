#pragma once

#include <QWPlatform/qwplatform_export.h>

#include <QByteArray>

#include <optional>

namespace platform
{

/// All bytes of the regular file at @p path (a real one, in the system's encoding), in as few system calls as can be.
/// None when it cannot be read or is no regular file: a pipe would never end. Any thread.
QWPLATFORM_EXPORT std::optional<QByteArray> readRegularFile(const QByteArray &path);

} // namespace platform

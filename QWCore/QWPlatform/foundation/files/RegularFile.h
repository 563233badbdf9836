#pragma once

#include <QWPlatform/qwplatform_private.h>

#include <QByteArray>

#include <optional>

namespace platform
{

/// Bytes that a file may have to be read at once: many times what any list or resource file of ours has. A file with a
/// hole in it can claim any length without taking room on its disk.
constexpr qint64 largestRegularFile = 64 << 20;

/// All bytes of the regular file at @p path (a real one, in the system's encoding), in as few system calls as can be.
/// None when it cannot be read, is longer than @p largest bytes or is no regular file: a pipe would never end. Any
/// thread.
QWPLATFORM_SHARED_EXPORT std::optional<QByteArray> readRegularFile(const QByteArray &path,
                                                                   qint64 largest = largestRegularFile);

} // namespace platform

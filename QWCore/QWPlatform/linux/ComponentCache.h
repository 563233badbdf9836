#pragma once

#include "InstalledComponent.h"

#include <optional>

namespace platform
{

/// The file that remembers what was read from each bundle, so that an unchanged machine costs no parsing. It is only a
/// cache: one that is damaged, or of another version, counts as none.
namespace ComponentCache
{

/// The bundles in the file at @p path (a real path).
std::optional<std::vector<InstalledBundle>> read(const QString &path);

/// Replaces the file; false when it could not be written, which costs only time.
bool write(const QString &path, const std::vector<InstalledBundle> &bundles);

} // namespace ComponentCache

} // namespace platform

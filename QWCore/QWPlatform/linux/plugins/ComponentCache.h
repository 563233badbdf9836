#pragma once

#include "InstalledComponent.h"

#include <optional>

namespace platform
{

/// The file that remembers what was read from each bundle, so that an unchanged machine costs no parsing. It is only a
/// cache: one that is damaged, or of another version, counts as none.
namespace ComponentCache
{

struct Contents
{
    QString lv2Path; ///< The folders that were searched for LV2 bundles.
    std::vector<InstalledBundle> bundles;
};

/// What the file at @p path (a real path) holds.
std::optional<Contents> read(const QString &path);

/// Replaces the file; false when it could not be written, which costs only time.
bool write(const QString &path, const QString &lv2Path, const std::vector<InstalledBundle> &bundles);

} // namespace ComponentCache

} // namespace platform

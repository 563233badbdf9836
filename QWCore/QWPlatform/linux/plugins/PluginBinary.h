#pragma once

#include <QString>

namespace platform
{

/// The code of plug-in bundles.
namespace PluginBinary
{

/// The Linux library of the bundle at @p path (a real path): the Info.plist's "CFBundleExecutable", else a file with
/// the bundle's name, in "Contents/<architecture>-linux", "Contents/Linux" or "Contents/MacOS"; else the first library
/// ("*.so") in these or in the bundle folder itself. A plain file is its own binary. "" when there is none.
QString inBundle(const QString &path);

/// Loads the library at @p path for the rest of the process's life, because many do not survive being unloaded; null,
/// and the reason in @p error, when it cannot be loaded.
void *load(const QString &path, QString *error);

} // namespace PluginBinary

} // namespace platform

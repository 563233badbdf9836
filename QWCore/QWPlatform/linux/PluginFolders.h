#pragma once

#include <QStringList>

#include <vector>

namespace platform
{

class Locations;

/// Where plug-in bundles are, as real paths in the order in which they count.
namespace PluginFolders
{

/// The ".component" bundles of the user's folder, then of the system's: what the user installed goes first.
QStringList componentBundles(const Locations &locations);

/// The LV2 bundles of LV2_PATH, or of the usual folders below the home folder and in the system.
QStringList lv2Bundles(const Locations &locations);

/// Modification time of @p path in nanoseconds since 1970; 0 when there is nothing.
qint64 stamp(const QString &path);
std::vector<qint64> stamps(const QStringList &paths);

} // namespace PluginFolders

} // namespace platform

#pragma once

#include <QStringList>

#include <vector>

namespace platform
{

class Locations;

/// Where plug-in bundles are, as real paths in the order in which they count.
namespace PluginFolders
{

struct Bundles
{
    QStringList paths;
    QStringList passedOver; ///< Those whose name is not UTF-8, so that no path can name them; for a log.
};

/// The ".component" bundles of the user's folder, then of the system's: what the user installed goes first. Then the
/// LV2 bundles of lv2Path().
Bundles componentAndLv2Bundles(const Locations &locations);

/// The folders of LV2 bundles, as LV2_PATH names them: its own, or the usual ones below the home folder and in the
/// system.
QString lv2Path();

/// Modification time of @p path in nanoseconds since 1970; 0 when there is nothing.
qint64 stamp(const QString &path);
std::vector<qint64> stamps(const QStringList &paths);

} // namespace PluginFolders

} // namespace platform

#include "PluginFolders.h"

#include "../foundation/Locations.h"

#include <QFile>

#include <algorithm>
#include <dirent.h>
#include <memory>
#include <sys/stat.h>

namespace platform::PluginFolders
{

namespace
{
constexpr const char *componentFolders[] = {"~/Library/Audio/Plug-Ins/Components",
                                            "/Library/Audio/Plug-Ins/Components"};

#if defined(__x86_64__)
#define QW_MULTIARCH "x86_64-linux-gnu"
#elif defined(__aarch64__)
#define QW_MULTIARCH "aarch64-linux-gnu"
#else
#define QW_MULTIARCH "."
#endif
constexpr auto usualLv2Path = "~/.lv2:/usr/local/lib/lv2:/usr/lib/" QW_MULTIARCH "/lv2:/usr/lib/lv2";

/// Sorted paths of the folders and links in @p folder whose names end in @p suffix; hidden ones are passed over.
QStringList entries(const QString &folder, const QByteArray &suffix)
{
    const std::unique_ptr<DIR, int (*)(DIR *)> directory(::opendir(QFile::encodeName(folder).constData()), ::closedir);
    QStringList paths;
    while (const dirent *entry = directory ? ::readdir(directory.get()) : nullptr) {
        const QByteArrayView name(entry->d_name);
        const bool isPlainFile = entry->d_type == DT_REG;
        if (!isPlainFile && !name.startsWith('.') && name.endsWith(suffix))
            paths += folder + '/' + QFile::decodeName(entry->d_name);
    }
    std::sort(paths.begin(), paths.end());
    return paths;
}
} // namespace

QStringList componentBundles(const Locations &locations)
{
    QStringList paths;
    for (const char *folder : componentFolders)
        paths += entries(locations.mapped(folder), ".component");
    return paths;
}

QStringList lv2Bundles(const Locations &locations)
{
    const QString searchPath =
        qEnvironmentVariableIsEmpty("LV2_PATH") ? QString(usualLv2Path) : qEnvironmentVariable("LV2_PATH");
    QStringList paths;
    for (const QString &folder : searchPath.split(u':', Qt::SkipEmptyParts))
        paths += entries(locations.expandingTilde(folder), "");
    return paths;
}

qint64 stamp(const QString &path)
{
    struct stat status;
    if (::stat(QFile::encodeName(path).constData(), &status) != 0)
        return 0;
    return qint64(status.st_mtim.tv_sec) * 1'000'000'000 + status.st_mtim.tv_nsec;
}

std::vector<qint64> stamps(const QStringList &paths)
{
    std::vector<qint64> stamps;
    for (const QString &path : paths)
        stamps.push_back(stamp(path));
    return stamps;
}

} // namespace platform::PluginFolders

#include "PluginFolders.h"

#include "QWPlatform/foundation/Locations.h"
#include "QWPlatform/foundation/lists/Utf8.h"

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

/// Adds the sorted paths of the folders and links in @p folder whose names end in @p suffix, hidden ones not.
void addEntries(Bundles &bundles, const QString &folder, const QByteArray &suffix)
{
    const std::unique_ptr<DIR, int (*)(DIR *)> directory(::opendir(QFile::encodeName(folder).constData()), ::closedir);
    const auto before = bundles.paths.size();
    while (const dirent *entry = directory ? ::readdir(directory.get()) : nullptr) {
        const QByteArrayView name(entry->d_name);
        const bool isPlainFile = entry->d_type == DT_REG;
        if (isPlainFile || name.startsWith('.') || !name.endsWith(suffix))
            continue;
        const bool isText = QUtf8StringView(name).isValidUtf8();
        (isText ? bundles.paths : bundles.passedOver) += folder + '/' + textOfUtf8(name);
    }
    std::sort(bundles.paths.begin() + before, bundles.paths.end());
}
} // namespace

Bundles componentAndLv2Bundles(const Locations &locations)
{
    Bundles bundles;
    for (const char *folder : componentFolders)
        addEntries(bundles, locations.mapped(folder), ".component");
    for (const QString &folder : lv2Path().split(u':', Qt::SkipEmptyParts))
        addEntries(bundles, locations.expandingTilde(folder), "");
    return bundles;
}

QString lv2Path()
{
    return qEnvironmentVariableIsEmpty("LV2_PATH") ? QString(usualLv2Path) : qEnvironmentVariable("LV2_PATH");
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

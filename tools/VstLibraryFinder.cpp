#include "VstLibraryFinder.h"

#include "ElfExports.h"

#include <QDirIterator>
#include <QFileInfo>
#include <QSet>

#include <algorithm>

namespace VstLibraryFinder
{

namespace
{
constexpr const char *folders[] = {
    "~/.vst",       "~/.lxvst",       "/usr/local/lib/vst",           "/usr/local/lib/lxvst",
    "/usr/lib/vst", "/usr/lib/lxvst", "/usr/lib/x86_64-linux-gnu/vst"};

QStringList librariesBelow(const QString &folder)
{
    QStringList paths;
    // Links to folders are not followed, so that a circle of them ends.
    for (QDirIterator files(folder, {"*.so"}, QDir::Files, QDirIterator::Subdirectories); files.hasNext();)
        paths += files.next();
    std::sort(paths.begin(), paths.end());
    return paths;
}
} // namespace

QStringList usualFolders(const QString &home)
{
    QStringList paths = qEnvironmentVariable("VST_PATH").split(u':', Qt::SkipEmptyParts);
    paths.append(QStringList(std::begin(folders), std::end(folders)));
    for (QString &path : paths)
        if (path.startsWith("~/"))
            path.replace(0, 1, home);
    return paths;
}

QStringList candidates(const QStringList &searched)
{
    QStringList found;
    QSet<QString> known;
    for (const QString &folder : searched)
        for (const QString &path : librariesBelow(folder)) {
            const QString real = QFileInfo(path).canonicalFilePath();
            if (real.isEmpty() || known.contains(real))
                continue;
            known.insert(real);
            found += QFileInfo(path).absoluteFilePath();
        }
    return found;
}

bool isVstLibrary(const QString &path)
{
    return exportsOneOf(path, {"VSTPluginMain", "main"});
}

} // namespace VstLibraryFinder

#include "VstLibraryFinder.h"

#include "ElfExports.h"

#include <QDir>
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

/// The walk through one folder. Links to folders are followed, since packages install a link to where their libraries
/// are; each real folder is looked at once, so that a circle of links ends.
class Walk
{
public:
    QStringList librariesBelow(const QString &folder)
    {
        _enter(folder, 0);
        std::sort(m_paths.begin(), m_paths.end());
        return m_paths;
    }

private:
    void _enter(const QString &folder, int depth)
    {
        constexpr int deepest = 16;
        const QString real = QFileInfo(folder).canonicalFilePath();
        if (real.isEmpty() || m_seen.contains(real) || depth > deepest)
            return;
        m_seen.insert(real);
        for (const QFileInfo &entry : QDir(folder).entryInfoList(QDir::Files | QDir::Dirs | QDir::NoDotAndDotDot)) {
            if (entry.isDir())
                _enter(entry.filePath(), depth + 1);
            else if (entry.fileName().endsWith(".so"))
                m_paths += entry.filePath();
        }
    }

    QStringList m_paths;
    QSet<QString> m_seen; ///< Real paths of folders.
};
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
        for (const QString &path : Walk().librariesBelow(folder)) {
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

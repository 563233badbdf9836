#include "FolderEntries.h"

#include <QWPlatform/foundation/lists/Utf8.h>

#include <QDebug>
#include <QFile>

#include <dirent.h>
#include <memory>
#include <sys/stat.h>

namespace qw
{

namespace
{
FolderEntries::Kind kindOf(const dirent &entry)
{
    switch (entry.d_type) {
    case DT_DIR:
        return FolderEntries::Kind::Folder;
    case DT_LNK:
    case DT_UNKNOWN:
        return FolderEntries::Kind::Unknown;
    default:
        return FolderEntries::Kind::Other;
    }
}

bool isSelfOrParent(QByteArrayView name)
{
    return name == "." || name == "..";
}

/// The name as text; "" when the bytes are no text, so that the file could not be found by it again.
QString textOf(QByteArrayView name)
{
    return QUtf8StringView(name).isValidUtf8() ? platform::textOfUtf8(name) : QString();
}
} // namespace

FolderEntries::FolderEntries(const QString &path)
{
    const std::unique_ptr<DIR, int (*)(DIR *)> folder(::opendir(QFile::encodeName(path).constData()), ::closedir);
    if (!folder)
        return;
    struct stat status;
    if (::fstat(::dirfd(folder.get()), &status) == 0)
        m_identity = {status.st_dev, status.st_ino};
    while (const dirent *entry = ::readdir(folder.get())) {
        const QByteArrayView name(entry->d_name);
        if (isSelfOrParent(name))
            continue;
        if (QString text = textOf(name); !text.isEmpty())
            m_entries.push_back({std::move(text), kindOf(*entry)});
        else if (kindOf(*entry) == Kind::Folder || name.endsWith(".vst"))
            qWarning("\"%s\" in \"%s\" is passed over: its name is not UTF-8.", qUtf8Printable(QString::fromUtf8(name)),
                     qUtf8Printable(path));
    }
}

} // namespace qw

#include "FileNameIcons.h"

#include <QMimeDatabase>

namespace platform
{

namespace
{
QMimeType typeByName(const QFileInfo &file)
{
    return QMimeDatabase().mimeTypeForFile(file.fileName(), QMimeDatabase::MatchExtension);
}
} // namespace

QIcon FileNameIcons::icon(IconType type) const
{
    return QFileIconProvider::icon(type);
}

QIcon FileNameIcons::icon(const QFileInfo &file) const
{
    if (file.isDir())
        return icon(Folder);
    const QMimeType type = typeByName(file);
    return QIcon::fromTheme(type.iconName(), QIcon::fromTheme(type.genericIconName(), icon(File)));
}

QString FileNameIcons::type(const QFileInfo &file) const
{
    return file.isDir() ? QFileIconProvider::type(file) : typeByName(file).comment();
}

} // namespace platform

#include "TitleFolders.h"

#include <QDir>
#include <QFileInfo>

namespace qw
{

bool TitleFolders::make(const QString &folder, const QString &title)
{
    QStringList names = title.split(u'/');
    names.removeLast(); // the file's
    if (names.size() > mostLevels)
        return false;
    QString path = folder;
    for (const QString &name : names) {
        path += u'/' + name;
        if (QFileInfo(path).isDir())
            continue;
        if (!QDir().mkdir(path)) {
            removeEmpty();
            return false;
        }
        m_made.append(path);
    }
    return true;
}

void TitleFolders::removeEmpty()
{
    while (!m_made.isEmpty() && QDir().rmdir(m_made.last()))
        m_made.removeLast();
    m_made.clear();
}

} // namespace qw

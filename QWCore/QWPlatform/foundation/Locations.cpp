#include "Locations.h"

namespace platform
{

namespace
{
QString withoutTrailingSlash(QString path)
{
    while (path.endsWith(u'/'))
        path.chop(1);
    return path;
}

bool isBelow(const QString &path, QStringView folder)
{
    return path.startsWith(folder) && (path.size() == folder.size() || path.at(folder.size()) == u'/');
}
} // namespace

Locations::Locations(QString home, QString libraryRoot)
    : m_home(withoutTrailingSlash(std::move(home)))
    , m_libraryRoot(withoutTrailingSlash(std::move(libraryRoot)))
{
}

QString Locations::expandingTilde(const QString &path) const
{
    return isBelow(path, u"~") ? QString(m_home + QStringView(path).mid(1)) : path;
}

QString Locations::mapped(const QString &path) const
{
    return isBelow(path, u"/Library") ? QString(m_libraryRoot + path) : expandingTilde(path);
}

void Locations::setSupportSite(const QString &address)
{
    m_supportSite = withoutTrailingSlash(address);
}

} // namespace platform

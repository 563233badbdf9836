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

class Q_DECL_HIDDEN Locations::Private
{
public:
    QString home;
    QString libraryRoot;
    QString supportSite;
};

Locations::Locations(QString home, QString libraryRoot)
    : d(new Private{withoutTrailingSlash(std::move(home)), withoutTrailingSlash(std::move(libraryRoot)), {}})
{
}

Locations::~Locations() = default;

const QString &Locations::home() const
{
    return d->home;
}

const QString &Locations::libraryRoot() const
{
    return d->libraryRoot;
}

const QString &Locations::supportSite() const
{
    return d->supportSite;
}

QString Locations::expandingTilde(const QString &path) const
{
    return isBelow(path, u"~") ? QString(d->home + QStringView(path).mid(1)) : path;
}

QString Locations::mapped(const QString &path) const
{
    return isBelow(path, u"/Library") ? QString(d->libraryRoot + path) : expandingTilde(path);
}

void Locations::setSupportSite(const QString &address)
{
    d->supportSite = withoutTrailingSlash(address);
}

} // namespace platform

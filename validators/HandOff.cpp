#include "HandOff.h"

#include <QWPlatform/System.h>
#include <QWPlatform/foundation/Locations.h>
#include <QWPlatform/foundation/PropertyList.h>

#include <QDir>
#include <QFileInfo>
#include <QSaveFile>

bool writeHandOff(const QString &path, const QVariantMap &state)
{
    const QByteArray list = platform::PropertyList::toXml(state);
    QSaveFile file(platform::System::current().locations().mapped(path));
    QDir().mkpath(QFileInfo(file.fileName()).path());
    return !list.isEmpty() && file.open(QIODevice::WriteOnly) && file.write(list) == list.size() && file.commit();
}

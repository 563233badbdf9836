#include "HandOff.h"

#include <QWPlatform/System.h>
#include <QWPlatform/foundation/Locations.h>
#include <QWPlatform/foundation/PropertyList.h>

#include <QDir>
#include <QFileInfo>
#include <QTemporaryFile>

#include <cstdio>

/// Written beside its place and moved there whole. Nothing waits for the disk: the host reads it at once.
bool writeHandOff(const QString &path, const QVariantMap &state)
{
    const QString real = platform::System::current().locations().mapped(path);
    const QByteArray list = platform::PropertyList::toXml(state);
    QDir().mkpath(QFileInfo(real).path());
    QTemporaryFile file(real + ".XXXXXX"); // removed at the end if it is still there
    return !list.isEmpty() && file.open() && file.write(list) == list.size() && file.flush() &&
           std::rename(QFile::encodeName(file.fileName()).constData(), QFile::encodeName(real).constData()) == 0;
}

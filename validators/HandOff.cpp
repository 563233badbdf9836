#include "HandOff.h"

#include "HostProcess.h"

#include <QWPlatform/System.h>
#include <QWPlatform/foundation/Locations.h>

#include <QDir>
#include <QFileInfo>
#include <QTemporaryFile>

#include <cstdio>

/// Written beside its place and moved there whole. Nothing waits for the disk: the host reads it at once.
bool writeHandOff(const QString &path, const QByteArray &list)
{
    const QString real = platform::System::current().locations().mapped(path);
    QDir().mkpath(QFileInfo(real).path());
    QTemporaryFile file(real + ".XXXXXX"); // removed at the end if it is still there
    return file.open() && file.write(list) == list.size() && file.flush() && isHostThere() &&
           std::rename(QFile::encodeName(file.fileName()).constData(), QFile::encodeName(real).constData()) == 0;
}

#include "PresetNames.h"

#include <QWBase/files/QWPathStrings.h>

namespace qw::PresetNames
{

bool isHidden(const QString &name)
{
    return name.startsWith('.') || name.startsWith('_');
}

QString withoutExtension(const QString &fileName)
{
    const qsizetype dot = fileName.lastIndexOf('.');
    return dot > 0 ? fileName.left(dot) : fileName;
}

QString forFile(const QString &path)
{
    QString name = QWPathStrings::filename(path);
    while (isHidden(name))
        name.remove(0, 1);
    return name;
}

} // namespace qw::PresetNames

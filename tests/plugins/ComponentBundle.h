#pragma once

#include "base/ResourceFileBytes.h"
#include "fakes/FakeSystem.h"

#include <QFileInfo>

/// A bundle at @p path with this Info.plist, or none, and a resource file that registers a unit.
inline void addComponentBundle(const FakeSystem &system, const QString &path, const QVariantMap &info,
                               const QByteArray &resources = resourceFileBytes())
{
    if (!info.isEmpty())
        system.writePropertyList(path + "/Contents/Info.plist", info);
    system.writeFile(path + "/Contents/Resources/" + QFileInfo(path).completeBaseName() + ".rsrc", resources);
}

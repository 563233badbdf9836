#pragma once

#include "QWPlatform/plugins/AudioComponent.h"

#include <QByteArray>
#include <QString>

#include <vector>

namespace platform
{

/// One unit of an installed bundle.
struct InstalledComponent
{
    AudioComponent component; ///< Of an LV2 plug-in only the type is set until codes are assigned.
    QByteArray name;          ///< "Author: Name", UTF-8; empty when it cannot be read.
    QString author;           ///< Of an LV2 plug-in; may be empty.
    QString uri;              ///< Of an LV2 plug-in.
    QString factoryFunction;  ///< Of a ".component" bundle; may be empty.
};

/// A bundle folder as it was when it was read.
struct InstalledBundle
{
    QString path;
    std::vector<qint64> stamps; ///< Modification times of what the units were read from; 0 for what was missing.
    std::vector<InstalledComponent> components;
};

} // namespace platform

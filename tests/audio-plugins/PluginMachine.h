#pragma once

#include "PluginDisk.h"

#include <QWPlatform/linux/plugins/LinuxComponentRegistry.h>
#include <QWPlatform/linux/plugins/LinuxPluginLoader.h>

/// This machine's registry and loader on a disk of their own.
struct PluginMachine
{
    PluginDisk disk;
    platform::Locations locations = disk.locations();
    platform::LinuxComponentRegistry registry{locations};
    platform::LinuxPluginLoader loader{locations, registry};
    QString error; ///< Why the last plug-in was refused.
};

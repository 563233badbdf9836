#pragma once

#include "AudioComponent.h"

#include <QWPlatform/qwplatform_export.h>

#include <QString>

#include <memory>

namespace platform
{

class AudioPlugin;

/// Opens installed plug-ins in this process. A broken plug-in can take the process down; that is what the validators
/// are for. Any one thread.
class QWPLATFORM_EXPORT PluginLoader
{
public:
    virtual ~PluginLoader();

    /// Opens an LV2 plug-in or the unit of a ".component" bundle; null, and the reason in @p error, when it refuses.
    virtual std::unique_ptr<AudioPlugin> openComponent(const AudioComponent &component, QString *error) = 0;

    /// Opens the plug-in of the ".vst" bundle at @p path (documented text).
    virtual std::unique_ptr<AudioPlugin> openVST(const QString &path, QString *error) = 0;
};

} // namespace platform

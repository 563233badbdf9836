#pragma once

#include "QWPlatform/plugins/PluginLoader.h"

#include <QWPlatform/qwplatform_private.h>

namespace platform
{

class ComponentRegistry;
class Locations;

class QWPLATFORM_TEST_EXPORT LinuxPluginLoader : public PluginLoader
{
public:
    LinuxPluginLoader(const Locations &locations, ComponentRegistry &registry);

    std::unique_ptr<AudioPlugin> openComponent(const AudioComponent &component, QString *error) override;
    std::unique_ptr<AudioPlugin> openVST(const QString &path, QString *error) override;

private:
    const Locations &m_locations;
    ComponentRegistry &m_registry;
};

} // namespace platform

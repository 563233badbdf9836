#include "LinuxPluginLoader.h"

#include "ComponentUnit.h"
#include "PluginBinary.h"
#include "QWPlatform/devices/components/ComponentRegistry.h"
#include "QWPlatform/foundation/Locations.h"
#include "QWPlatform/linux/lv2/Lv2Access.h"
#include "QWPlatform/linux/vst/VstEffect.h"

#include <QFileInfo>

namespace platform
{

namespace
{
std::unique_ptr<AudioPlugin> refuse(QString *error, const QString &reason)
{
    *error = reason;
    return nullptr;
}
} // namespace

LinuxPluginLoader::LinuxPluginLoader(const Locations &locations, ComponentRegistry &registry)
    : m_locations(locations)
    , m_registry(registry)
{
}

std::unique_ptr<AudioPlugin> LinuxPluginLoader::openComponent(const AudioComponent &component, QString *error)
{
    QString unused;
    error = error ? error : &unused;
    const auto location = m_registry.locationOfComponent(component);
    if (!location)
        return refuse(error, QStringLiteral("The component is not installed."));
    if (location->uri.isEmpty())
        return ComponentUnit::open(component, *location,
                                   QString::fromUtf8(m_registry.nameOfComponent(component).mid(1)), error);
    Lv2Access *lv2 = lv2Access();
    return lv2 ? lv2->open(location->path, location->uri, error)
               : refuse(error, QStringLiteral("LV2 plug-ins cannot be used."));
}

std::unique_ptr<AudioPlugin> LinuxPluginLoader::openVST(const QString &path, QString *error)
{
    QString unused;
    error = error ? error : &unused;
    const QString bundle = m_locations.mapped(path);
    if (!QFileInfo::exists(bundle))
        return refuse(error, QStringLiteral("There is no such bundle."));
    const QString library = PluginBinary::inBundle(bundle);
    if (library.isEmpty())
        return refuse(error, QStringLiteral("The bundle holds no library for this machine."));
    return VstEffect::open(library, error);
}

} // namespace platform

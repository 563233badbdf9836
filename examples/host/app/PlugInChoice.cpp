#include "PlugInChoice.h"

#include <QWBase/QWComponentDescription.h>
#include <QWBase/QWVSTDescription.h>
#include <QWPlatform/System.h>
#include <QWPlatform/appkit/MenuItem.h>
#include <QWPlatform/plugins/PluginLoader.h>

namespace demo
{

namespace
{
using VSTRecord = std::shared_ptr<QWVSTDescription>;

PluginRenderer::Opener openerOf(const QWComponentDescription &description)
{
    return [&loader = platform::System::current().pluginLoader(), component = description.component()](QString *error) {
        return loader.openComponent(component, error);
    };
}

PluginRenderer::Opener openerOf(const QWVSTDescription &record)
{
    return [&loader = platform::System::current().pluginLoader(), path = record.path()](QString *error) {
        return loader.openVST(path, error);
    };
}
} // namespace

std::optional<PlugInChoice> PlugInChoice::fromMenuItem(const platform::MenuItem &item)
{
    const QVariant object = item.representedObject();
    if (object.metaType() == QMetaType::fromType<QWComponentDescription>())
        return PlugInChoice{item.title(), openerOf(object.value<QWComponentDescription>())};
    if (const auto record = object.value<VSTRecord>())
        return PlugInChoice{item.title(), openerOf(*record)};
    return std::nullopt;
}

} // namespace demo

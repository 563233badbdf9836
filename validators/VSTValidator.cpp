// "VST Validator": tries the plug-in of one ".vst" bundle. Argument: its path.
#include "PluginTrial.h"
#include "Validator.h"
#include "Watchdog.h"

#include <QWBase/QWVSTDescription.h>
#include <QWPlatform/System.h>
#include <QWPlatform/plugins/AudioPlugin.h>
#include <QWPlatform/plugins/PluginLoader.h>

namespace
{
QVariantMap stateOf(const QString &path, const platform::AudioPlugin &plugin)
{
    const auto description = QWVSTDescription::descriptionWithPath(path);
    description->setInstrument(plugin.isInstrument());
    description->setName(plugin.name());
    description->setVendor(plugin.vendor());
    description->setCategory(plugin.category());
    description->setFlags(plugin.flags());
    description->setUniqueID(plugin.uniqueID());
    return description->state();
}

QVariantMap validateBundle(const QStringList &arguments, Watchdog &watchdog, QString *error)
{
    const QString &path = arguments.first();
    watchdog.progress("opening");
    auto plugin = platform::System::current().pluginLoader().openVST(path, error);
    if (!plugin)
        return {};
    const QVariantMap state = stateOf(path, *plugin);
    *error = tryPlugin(*plugin, watchdog);
    watchdog.progress("closing");
    plugin.reset();
    return state;
}
} // namespace

int main(int argc, char **argv)
{
    constexpr Validator validator{"VST Validator",
                                  "PATH",
                                  "PATH is that of a \".vst\" bundle, or of a library.",
                                  1,
                                  "~/Library/Application Support/Quorwell/validated_vst.plist",
                                  validateBundle};
    validator.run(argc, argv);
}

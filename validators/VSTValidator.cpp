// "VST Validator": tries the plug-in of one ".vst" bundle. Argument: its path.
#include "PluginTrial.h"
#include "Validator.h"

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

TrialOutcome validateBundle(const QStringList &arguments, const PluginTrial &trial)
{
    const QString &path = arguments.first();
    return trial.run([&](QString *error) { return platform::System::current().pluginLoader().openVST(path, error); },
                     [&](const platform::AudioPlugin &plugin) { return stateOf(path, plugin); });
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

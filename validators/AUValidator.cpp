// "AU Validator": tries one unit of the component registry. Arguments: type, subtype and manufacturer, each as a signed
// decimal number.
#include "PluginTrial.h"
#include "Validator.h"

#include <QWBase/QWComponentDescription.h>
#include <QWPlatform/System.h>
#include <QWPlatform/plugins/AudioPlugin.h>
#include <QWPlatform/plugins/PluginLoader.h>

#include <limits>

namespace
{
std::optional<quint32> codeOf(const QString &text)
{
    bool isNumber = false;
    const qlonglong value = text.toLongLong(&isNumber);
    if (!isNumber || value < std::numeric_limits<qint32>::min() || value > std::numeric_limits<quint32>::max())
        return std::nullopt;
    return static_cast<quint32>(value);
}

TrialOutcome validateUnit(const QStringList &arguments, const PluginTrial &trial)
{
    const auto type = codeOf(arguments[0]);
    const auto subtype = codeOf(arguments[1]);
    const auto manufacturer = codeOf(arguments[2]);
    if (!type || !subtype || !manufacturer)
        return {.error = QStringLiteral("A code is no 32-bit number.")};
    const QWComponentDescription description(*type, *subtype, *manufacturer);
    return trial.run(
        [&](QString *error) {
            return platform::System::current().pluginLoader().openComponent(description.component(), error);
        },
        [&](const platform::AudioPlugin &) {
            return QVariantMap{{"componentDescription", description.state()}, {"ignore", false}};
        });
}
} // namespace

int main(int argc, char **argv)
{
    constexpr Validator validator{"AU Validator",
                                  "TYPE SUBTYPE MANUFACTURER",
                                  "All three are four-character codes as decimal numbers: 1635083896 is \"aufx\".",
                                  3,
                                  "~/Library/Application Support/Quorwell/validated_au.plist",
                                  validateUnit};
    validator.run(argc, argv);
}

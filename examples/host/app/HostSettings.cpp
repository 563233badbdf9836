#include "HostSettings.h"

#include <QWPlatform/System.h>
#include <QWPlatform/foundation/UserDefaults.h>

#include <QFileInfo>

namespace demo::HostSettings
{

namespace
{
platform::UserDefaults &defaults()
{
    return platform::System::current().userDefaults();
}

/// What counts until the user chooses.
QVariantMap usual()
{
    return {{launchKey, static_cast<qlonglong>(Launch::Nothing)},
            {askKey, true},
            {rememberFrameKey, true},
            {effectNameKey, true},
            {showSavedKey, false},
            {rulerKey, true},
            {chainKey, true},
            {gridKey, true},
            {gridIntensityKey, 100},
            {remoteKey, false}}; // it would take the receiver from the desktop
}
} // namespace

void registerDefaults()
{
    defaults().registerDefaults(usual());
}

// Asks for the usual value itself: views that are used alone, as in a test, have registered nothing.
bool isOn(const char *key)
{
    return defaults().object(key).isValid() ? defaults().boolean(key) : usual().value(key).toBool();
}

Launch launch()
{
    const qlonglong stored = defaults().integer(launchKey);
    const bool known = stored >= 0 && stored <= static_cast<qlonglong>(Launch::LastSound);
    return known ? static_cast<Launch>(stored) : Launch::Nothing;
}

QString lastSound()
{
    const QString path = defaults().string(lastSoundKey);
    return QFileInfo(path).isFile() ? path : QString();
}

void setLastSound(const QString &path)
{
    defaults().setObject(lastSoundKey, path);
}

} // namespace demo::HostSettings

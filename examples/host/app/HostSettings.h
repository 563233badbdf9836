#pragma once

#include <QString>

namespace demo
{

/// The user's choices in the preferences, as they stand at the moment. Everybody asks when it matters, so a change
/// counts at once.
namespace HostSettings
{

/// What happens at launch when no file was asked for.
enum class Launch
{
    Nothing,
    TestTone,
    LastSound
};

// Keys in the user defaults.
constexpr auto launchKey = "Launch Action";
constexpr auto lastSoundKey = "Last Sound";
constexpr auto askKey = "Ask Before Closing";
constexpr auto rememberFrameKey = "Remember Window Frame";
constexpr auto effectNameKey = "Add Effect Name";
constexpr auto showSavedKey = "Show Saved File";
constexpr auto rulerKey = "Show Ruler";
constexpr auto chainKey = "Show Chain";
constexpr auto gridKey = "Use Grid";
constexpr auto gridIntensityKey = "Grid Intensity";
constexpr auto remoteKey = "Use Remote";

/// For the controls that show the settings; to be called once, first.
void registerDefaults();

bool isOn(const char *key);
Launch launch();

/// Path of the sound file that was opened last; "" when there is none, or it has gone.
QString lastSound();
void setLastSound(const QString &path);

} // namespace HostSettings

} // namespace demo

#pragma once

#include <QString>

namespace platform
{
class AudioPlugin;
}
class Watchdog;

/// Starts @p plugin, sends it a few blocks of silence and of noise, an instrument also a note, and stops it. Gives what
/// was wrong; "" when it refused nothing and gave only finite samples.
QString tryPlugin(platform::AudioPlugin &plugin, Watchdog &watchdog);

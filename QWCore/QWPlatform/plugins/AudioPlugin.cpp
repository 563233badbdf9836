#include "AudioPlugin.h"

namespace platform
{

AudioPlugin::~AudioPlugin() = default;

} // namespace platform

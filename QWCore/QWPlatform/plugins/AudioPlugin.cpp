#include "AudioPlugin.h"

namespace platform
{

AudioPlugin::~AudioPlugin() = default;

int AudioPlugin::category() const
{
    return 0;
}

int AudioPlugin::flags() const
{
    return 0;
}

int AudioPlugin::uniqueID() const
{
    return 0;
}

} // namespace platform

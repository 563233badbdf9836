#pragma once

#include "QWPlatform/devices/serial/SerialRegistry.h"

#include <functional>

namespace platform
{

/// One place where serial devices come from. Main thread.
class SerialDeviceSource
{
public:
    virtual ~SerialDeviceSource() = default;

    /// What is there now.
    virtual std::vector<SerialService> present() = 0;

    /// Called from the event loop when present() may have changed.
    std::function<void()> changed;
};

} // namespace platform

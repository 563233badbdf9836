#pragma once

#include "QWPlatform/devices/input/HidPlugin.h"

namespace platform
{

class InputDevice;

/// The receiver's device, open.
class LinuxRemoteReceiverPlugin : public HidPlugin
{
public:
    explicit LinuxRemoteReceiverPlugin(std::shared_ptr<InputDevice> device);

    std::unique_ptr<HidInterface> queryInterface() override;

private:
    const std::shared_ptr<InputDevice> m_device;
};

} // namespace platform

#include "LinuxRemoteReceiverPlugin.h"

#include "LinuxRemoteReceiverInterface.h"

namespace platform
{

LinuxRemoteReceiverPlugin::LinuxRemoteReceiverPlugin(std::shared_ptr<InputDevice> device)
    : m_device(std::move(device))
{
}

std::unique_ptr<HidInterface> LinuxRemoteReceiverPlugin::queryInterface()
{
    return std::make_unique<LinuxRemoteReceiverInterface>(m_device);
}

} // namespace platform

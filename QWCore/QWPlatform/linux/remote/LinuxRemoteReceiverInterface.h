#pragma once

#include "QWPlatform/devices/input/HidInterface.h"

namespace platform
{

class InputDevice;

/// Holds the receiver by the kernel's grab, which hides its keys from the desktop.
class LinuxRemoteReceiverInterface : public HidInterface
{
public:
    explicit LinuxRemoteReceiverInterface(std::shared_ptr<InputDevice> device);
    ~LinuxRemoteReceiverInterface() override;

    bool openExclusively() override;
    void close() override;

    /// None for a device without any key of the remote: the general driver has it, not the receiver's own.
    std::optional<QVariantList> copyMatchingElements() override;
    std::unique_ptr<HidQueue> allocateQueue() override;
    void setRemovalCallback(HidCallback callback, void *target, void *refcon) override;

private:
    const std::shared_ptr<InputDevice> m_device;
};

} // namespace platform

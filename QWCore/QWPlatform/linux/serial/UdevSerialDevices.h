#pragma once

#include "SerialDeviceSource.h"

#include <QString>

#include <libudev.h>
#include <memory>

class QSocketNotifier;

namespace platform
{

/// The serial devices of the machine, from udev. Without udev there are none.
class UdevSerialDevices : public SerialDeviceSource
{
public:
    UdevSerialDevices();
    ~UdevSerialDevices() override;

    std::vector<SerialService> present() override;

private:
    template <auto Unref>
    struct Release
    {
        void operator()(auto *object) const { Unref(object); }
    };
    using Udev = std::unique_ptr<udev, Release<udev_unref>>;
    using Monitor = std::unique_ptr<udev_monitor, Release<udev_monitor_unref>>;
    using Enumeration = std::unique_ptr<udev_enumerate, Release<udev_enumerate_unref>>;
    using Device = std::unique_ptr<udev_device, Release<udev_device_unref>>;

    void _watch();
    void _receive();
    Device _deviceAt(const char *sysPath) const;

    Udev m_udev;
    Monitor m_monitor;
    std::unique_ptr<QSocketNotifier> m_notifier;
};

} // namespace platform

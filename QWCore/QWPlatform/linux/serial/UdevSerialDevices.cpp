#include "UdevSerialDevices.h"

#include <QFile>
#include <QSocketNotifier>
#include <QStringList>

#include <algorithm>

namespace platform
{

namespace
{
constexpr auto linkStart = "/dev/tty.";
constexpr const char *gridSerials[] = {"m64-", "m128-", "m256-", "m40h"};

QStringList linksOf(udev_device *device)
{
    QStringList links;
    for (auto *entry = udev_device_get_devlinks_list_entry(device); entry; entry = udev_list_entry_get_next(entry))
        links.append(QFile::decodeName(udev_list_entry_get_name(entry)));
    links.sort(); // udev keeps them in a set of no order
    return links;
}

/// The link that a rule made for applications, else the device's own node.
QString dialInDevice(udev_device *device)
{
    for (const QString &link : linksOf(device))
        if (link.startsWith(linkStart))
            return link;
    return QFile::decodeName(udev_device_get_devnode(device));
}

bool isGridSerial(const QString &serial)
{
    return std::any_of(std::begin(gridSerials), std::end(gridSerials),
                       [&](const char *start) { return serial.startsWith(start); });
}

QString adviceFor(udev_device *device, const QString &path)
{
    const QString serial = udev_device_get_property_value(device, "ID_SERIAL_SHORT");
    if (path.startsWith(linkStart) || !isGridSerial(serial))
        return {};
    return path + " is the grid " + serial +
           ", but applications cannot tell: install the rule 70-quorwell-grid.rules in /etc/udev/rules.d and plug the "
           "grid in again.";
}

/// A device that was taken out and put in again has been initialized at another time.
SerialService serviceOf(udev_device *device)
{
    const QString path = dialInDevice(device);
    const QString initialized = udev_device_get_property_value(device, "USEC_INITIALIZED");
    return {.key = QFile::decodeName(udev_device_get_syspath(device)) + ' ' + initialized + ' ' + path,
            .dialInDevice = path,
            .advice = adviceFor(device, path)};
}

/// Consoles and pseudo-terminals have no hardware above them.
bool isSerialDevice(udev_device *device)
{
    return udev_device_get_devnode(device) && udev_device_get_parent(device);
}
} // namespace

UdevSerialDevices::UdevSerialDevices()
    : m_udev(udev_new())
{
    if (m_udev)
        m_monitor.reset(udev_monitor_new_from_netlink(m_udev.get(), "udev"));
    if (m_monitor)
        _watch();
}

UdevSerialDevices::~UdevSerialDevices() = default;

std::vector<SerialService> UdevSerialDevices::present()
{
    std::vector<SerialService> services;
    const Enumeration devices(m_udev ? udev_enumerate_new(m_udev.get()) : nullptr);
    if (!devices)
        return services;
    udev_enumerate_add_match_subsystem(devices.get(), "tty");
    udev_enumerate_add_match_is_initialized(devices.get());
    udev_enumerate_scan_devices(devices.get());
    for (auto *entry = udev_enumerate_get_list_entry(devices.get()); entry; entry = udev_list_entry_get_next(entry)) {
        const Device device = _deviceAt(udev_list_entry_get_name(entry));
        if (device && isSerialDevice(device.get()))
            services.push_back(serviceOf(device.get()));
    }
    return services;
}

void UdevSerialDevices::_watch()
{
    udev_monitor_filter_add_match_subsystem_devtype(m_monitor.get(), "tty", nullptr);
    if (udev_monitor_enable_receiving(m_monitor.get()) < 0)
        return;
    m_notifier = std::make_unique<QSocketNotifier>(udev_monitor_get_fd(m_monitor.get()), QSocketNotifier::Read);
    QObject::connect(m_notifier.get(), &QSocketNotifier::activated, m_notifier.get(), [this] { _receive(); });
}

void UdevSerialDevices::_receive()
{
    bool news = false;
    while (const Device device{udev_monitor_receive_device(m_monitor.get())})
        news = true;
    if (news && changed)
        changed();
}

UdevSerialDevices::Device UdevSerialDevices::_deviceAt(const char *sysPath) const
{
    return Device(udev_device_new_from_syspath(m_udev.get(), sysPath));
}

} // namespace platform

#include "LinuxRemoteReceiver.h"

#include "InputDevice.h"
#include "LinuxRemoteReceiverPlugin.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <array>

namespace platform
{

namespace
{
constexpr uint receiverVendor = 0x05ac;
constexpr std::array receiverProducts = {0x1440u, 0x8240u, 0x8241u, 0x8242u, 0x8243u}; // also in the udev rule
constexpr auto receiverDriver = "appleir";

/// The number that a file holds in hexadecimal digits; 0 when there is none.
uint hexadecimalNumber(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll().trimmed().toUInt(nullptr, 16) : 0;
}

/// @p folder is that of the event device; names differ between kernels, so they are not looked at.
bool isReceiver(const QString &folder)
{
    if (QFileInfo(QFileInfo(folder + "/device/device/driver").symLinkTarget()).fileName() == receiverDriver)
        return true;
    const uint product = hexadecimalNumber(folder + "/device/id/product");
    return hexadecimalNumber(folder + "/device/id/vendor") == receiverVendor &&
           std::find(receiverProducts.begin(), receiverProducts.end(), product) != receiverProducts.end();
}

/// "event2" before "event10".
QStringList eventDevices(const QString &folder)
{
    QStringList names = QDir(folder).entryList({"event*"}, QDir::Dirs);
    const auto number = [](const QString &name) { return name.mid(5).toUInt(); };
    std::sort(names.begin(), names.end(), [&](const auto &a, const auto &b) { return number(a) < number(b); });
    return names;
}
} // namespace

LinuxRemoteReceiver::LinuxRemoteReceiver(QString sysRoot, QString devRoot, std::shared_ptr<InputDeviceCalls> calls)
    : m_sysRoot(std::move(sysRoot))
    , m_devRoot(std::move(devRoot))
    , m_calls(std::move(calls))
{
}

std::optional<QString> LinuxRemoteReceiver::firstServiceMatching(const QString &className)
{
    if (className != "AppleIRController")
        return std::nullopt;
    const QString folder = m_sysRoot + "/class/input";
    for (const QString &name : eventDevices(folder))
        if (isReceiver(folder + '/' + name))
            return m_devRoot + "/input/" + name;
    return std::nullopt;
}

std::unique_ptr<HidPlugin> LinuxRemoteReceiver::createPlugin(const QString &service)
{
    auto device = InputDevice::open(m_calls, service);
    return device ? std::make_unique<LinuxRemoteReceiverPlugin>(std::move(device)) : nullptr;
}

} // namespace platform

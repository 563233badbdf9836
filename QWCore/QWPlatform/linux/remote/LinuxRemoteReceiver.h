#pragma once

#include "InputDeviceCalls.h"
#include "QWPlatform/devices/input/RemoteReceiver.h"

#include <QWPlatform/qwplatform_private.h>

namespace platform
{

/// The infrared receiver as the kernel's input device, which its driver makes of it.
class QWPLATFORM_TEST_EXPORT LinuxRemoteReceiver : public RemoteReceiver
{
public:
    /// @p sysRoot and @p devRoot are "/sys" and "/dev"; a test has folders of its own.
    explicit LinuxRemoteReceiver(QString sysRoot = "/sys", QString devRoot = "/dev",
                                 std::shared_ptr<InputDeviceCalls> calls = std::make_shared<InputDeviceCalls>());

    std::optional<QString> firstServiceMatching(const QString &className) override;
    std::unique_ptr<HidPlugin> createPlugin(const QString &service) override;

private:
    const QString m_sysRoot;
    const QString m_devRoot;
    const std::shared_ptr<InputDeviceCalls> m_calls;
};

} // namespace platform

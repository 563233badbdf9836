#pragma once

#include "QWPlatform/devices/serial/SerialRegistry.h"
#include "SerialDeviceSource.h"

#include <QWPlatform/qwplatform_private.h>

#include <memory>

namespace platform
{

/// The serial devices of udev and those linked in a folder. Watches from the first client on.
class QWPLATFORM_TEST_EXPORT LinuxSerialRegistry : public SerialRegistry
{
public:
    /// @p folder of links "tty.…"; "" for none.
    explicit LinuxSerialRegistry(QString folder);
    ~LinuxSerialRegistry() override;

    std::vector<SerialService> addMatchingNotification(SerialRegistryClient &client) override;
    Handle addInterestNotification(const SerialService &service, SerialRegistryClient &client) override;
    void releaseNotification(Handle handle) override;
    void removeClient(SerialRegistryClient &client) override;

private:
    struct Interest
    {
        Handle handle;
        SerialService service;
        SerialRegistryClient *client;
    };

    void _watch();
    void _addSource(std::unique_ptr<SerialDeviceSource> source);
    std::vector<SerialService> _scan() const;
    void _update();
    void _tellOfGone(const SerialService &service);
    void _tellOfNew(const std::vector<SerialService> &services);
    bool _has(Handle handle) const;

    const QString m_folder;
    std::vector<std::unique_ptr<SerialDeviceSource>> m_sources;
    std::vector<SerialService> m_present; ///< As the clients know it.
    std::vector<SerialRegistryClient *> m_clients;
    std::vector<Interest> m_interests;
    Handle m_lastHandle = 0;
};

} // namespace platform

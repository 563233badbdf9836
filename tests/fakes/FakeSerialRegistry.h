#pragma once

#include <QWPlatform/devices/serial/SerialRegistry.h>

#include <QStringList>

/// Serial devices that the test plugs in and out; clients hear of it at once.
class FakeSerialRegistry : public platform::SerialRegistry
{
public:
    std::vector<platform::SerialService> addMatchingNotification(platform::SerialRegistryClient &client) override;
    Handle addInterestNotification(const platform::SerialService &service,
                                   platform::SerialRegistryClient &client) override;
    void releaseNotification(Handle handle) override;
    void removeClient(platform::SerialRegistryClient &client) override;

    void plugIn(const QString &path, const QString &advice = {});
    void plugIn(const QStringList &paths); ///< Clients hear of all in one call.
    void unplug(const QString &path);

    /// Tells those who have an interest in the device.
    void sendMessage(const QString &path, quint32 messageType);

    /// Paths of the devices in which somebody has an interest, in order of registration.
    QStringList interests() const;

    std::vector<Handle> released; ///< In order; what was asked for, 0 too.

private:
    struct Interest
    {
        Handle handle;
        platform::SerialService service;
        platform::SerialRegistryClient *client;
    };

    std::vector<platform::SerialService> m_present;
    std::vector<platform::SerialRegistryClient *> m_clients;
    std::vector<Interest> m_interests;
    Handle m_lastHandle = 0;
    int m_plugged = 0;
};

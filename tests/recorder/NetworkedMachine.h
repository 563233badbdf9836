#pragma once

#include <QWPlatform/linux/network/LinuxUrlDownloads.h>
#include <QWPlatform/linux/network/LinuxUrlLoader.h>
#include <QWPlatform/linux/services/LinuxNetServices.h>
#include <QWPlatform/machine/SystemServices.h>
#include <fakes/FakeSystem.h>

/// A machine that the test scripts, whose network is real: so are downloaded files.
class NetworkedMachine
{
public:
    /// @p services: those that are known beside Avahi's, as in QW_NET_SERVICES.
    explicit NetworkedMachine(const QString &services)
        : m_scope(system)
    {
        qputenv("QW_NET_SERVICES", services.toUtf8());
        platform::SystemServices &parts = platform::SystemServices::current();
        parts.netServices = std::make_unique<platform::LinuxNetServices>();
        parts.urlLoader = std::make_unique<platform::LinuxUrlLoader>();
        parts.urlDownloads = std::make_unique<platform::LinuxUrlDownloads>();
    }

    ~NetworkedMachine() { qunsetenv("QW_NET_SERVICES"); }
    NetworkedMachine(const NetworkedMachine &) = delete;
    NetworkedMachine &operator=(const NetworkedMachine &) = delete;

    FakeSystem system; ///< Its own network is no longer there.

private:
    platform::SystemScope m_scope;
};

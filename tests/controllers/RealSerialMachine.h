#pragma once

#include "fakes/FakeUrlLoader.h"

#include <QWPlatform/System.h>
#include <QWPlatform/foundation/Bundle.h>
#include <QWPlatform/foundation/Locations.h>
#include <QWPlatform/foundation/UserDefaults.h>
#include <QWPlatform/linux/serial/LinuxSerialLines.h>
#include <QWPlatform/linux/serial/LinuxSerialRegistry.h>
#include <QWPlatform/linux/system/LinuxClock.h>
#include <QWPlatform/machine/SystemScope.h>
#include <QWPlatform/machine/SystemServices.h>

#include <QTemporaryDir>

/// The real clock, and the real serial devices of a folder of its own. Of the rest there is only what a grid needs.
class RealSerialMachine
{
public:
    /// The folder's name holds no digits, which would be taken for a model.
    const QString &folder() const { return m_folder; }

    platform::System &system() { return *m_system; }

private:
    class Machine : public platform::System
    {
    public:
        explicit Machine(platform::SystemServices services)
            : System(std::move(services))
        {
        }
    };

    static std::unique_ptr<platform::System> _makeSystem(const QString &home, const QString &folder)
    {
        platform::SystemServices services;
        services.locations = std::make_unique<platform::Locations>(home, home);
        services.mainBundle = std::make_unique<platform::Bundle>(home + "/Host.app");
        services.userDefaults = std::make_unique<platform::UserDefaults>(home + "/defaults.plist");
        services.urlLoader = std::make_unique<FakeUrlLoader>();
        services.serialRegistry = std::make_unique<platform::LinuxSerialRegistry>(folder);
        services.serialLines = std::make_unique<platform::LinuxSerialLines>();
        services.clock = std::make_unique<platform::LinuxClock>();
        return std::make_unique<Machine>(std::move(services));
    }

    QTemporaryDir m_home{"/tmp/qwgrid-XXXXXX"};
    const QString m_folder = m_home.path() + "/devices";
    std::unique_ptr<platform::System> m_system = _makeSystem(m_home.path(), m_folder);
    platform::SystemScope m_current{*m_system};
};

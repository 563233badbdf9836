#pragma once

#include <QProcess>
#include <QTemporaryDir>

/// A message bus of the test's own, which the process then takes for its session bus.
class PrivateBus
{
public:
    ~PrivateBus()
    {
        m_daemon.terminate();
        m_daemon.waitForFinished();
    }

    /// False when it does not come up.
    bool start()
    {
        m_daemon.start("dbus-daemon", {"--session", "--nofork", "--nopidfile", "--print-address",
                                       "--address=unix:path=" + m_folder.filePath("bus")});
        if (!m_daemon.waitForReadyRead())
            return false;
        return qputenv("DBUS_SESSION_BUS_ADDRESS", m_daemon.readLine().trimmed());
    }

private:
    QTemporaryDir m_folder;
    QProcess m_daemon;
};

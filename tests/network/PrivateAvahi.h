#pragma once

#include <QDBusConnection>
#include <QMap>
#include <QProcess>
#include <QTemporaryDir>

/// An Avahi daemon and a system bus of the test's own, in a network of its own that consists of the loopback device.
/// The processes of the test find them by DBUS_SYSTEM_BUS_ADDRESS.
class PrivateAvahi
{
public:
    /// Takes this process out of the machine's network and hides its "/run". The first thing that a main function does:
    /// before there are threads. Ends the process where the kernel does not allow it; well, and saying so, for a user
    /// who is not root.
    static void enterPrivateNetwork();

    PrivateAvahi();
    ~PrivateAvahi();

    /// False when it does not come up. A bus that runs is ended first.
    bool startBus();
    bool startDaemon(const QString &interfaces = "lo");

    /// Makes two devices, "left" and "right", each with addresses of both protocols; false where there is no "ip".
    static bool addInterfaces();

    void killBus();
    void killDaemon();

    /// They take connections and calls, and answer none, until they are killed.
    void pauseBus();
    void pauseDaemon();

    /// Announces a service of the type "_http._tcp"; false when the daemon refuses.
    bool announce(const QString &name, int port);

    /// Announces one of a machine "six.local", whose one address is 2001:db8::7.
    bool announceOnIPv6(const QString &name, int port);

    /// Announces that there is a service of that name, and neither host nor port: it does not resolve.
    bool announceNameOnly(const QString &name);

    /// No longer announces it; the daemon says goodbye for it.
    bool withdraw(const QString &name);

private:
    QString _newGroup();
    bool _addService(const QString &group, const QString &name, const QString &host, int port);
    bool _commit(const QString &name, const QString &group);
    bool _call(const QString &path, const QString &interface, const QString &method, const QVariantList &arguments);
    bool _write(const QString &name, const QByteArray &text) const;
    QString _busAddress() const { return "unix:path=" + m_folder.filePath("bus"); }

    QTemporaryDir m_folder;
    QProcess m_bus;
    QProcess m_daemon;
    QMap<QString, QString> m_groups; ///< Of the announced services, by name.
};

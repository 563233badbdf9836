#include "PrivateAvahi.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusReply>
#include <QFile>
#include <QTest>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <net/if.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{
constexpr int longEnough = 30'000; // milliseconds
constexpr auto connectionName = "announcements";
constexpr auto avahiService = "org.freedesktop.Avahi";
constexpr auto avahiServer = "org.freedesktop.Avahi.Server";
constexpr auto avahiGroup = "org.freedesktop.Avahi.EntryGroup";
constexpr int anyInterface = -1;
constexpr int anyProtocol = -1;

constexpr auto busConfiguration = R"(<busconfig><type>system</type><listen>%1</listen><auth>EXTERNAL</auth>
<policy context="default"><allow user="*"/><allow own="*"/><allow send_type="method_call"/>
<allow send_destination="*" eavesdrop="true"/><allow receive_sender="*"/></policy></busconfig>
)";

constexpr auto daemonConfiguration = R"([server]
host-name=qwtest
use-ipv4=yes
use-ipv6=yes
allow-interfaces=%1
enable-dbus=yes
objects-per-client-max=4096
[publish]
publish-hinfo=no
publish-workstation=no
[wide-area]
enable-wide-area=no
)";

void must(bool done, const char *what)
{
    if (!done)
        qFatal("No network of the test's own: %s: %s", what, std::strerror(errno));
}

void raiseLoopback()
{
    const int socket = ::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    ifreq request{};
    qstrncpy(request.ifr_name, "lo", sizeof request.ifr_name);
    must(::ioctl(socket, SIOCGIFFLAGS, &request) == 0, "loopback");
    request.ifr_flags = short(request.ifr_flags | IFF_UP);
    must(::ioctl(socket, SIOCSIFFLAGS, &request) == 0, "loopback");
    ::close(socket);
}

void end(QProcess &process)
{
    process.kill();
    process.waitForFinished();
}

/// As records hold it: each part behind its length, a zero at the end.
QByteArray wireName(const QString &label, const QByteArrayList &rest)
{
    QByteArray name;
    for (const QByteArray &part : QByteArrayList{label.toUtf8()} + rest)
        name.append(char(part.size())).append(part);
    return name.append('\0');
}
} // namespace

void PrivateAvahi::enterPrivateNetwork()
{
    if (::geteuid() != 0) { // the daemon gives its folder to a user of its own
        std::puts("Skipped: a network of the test's own needs root");
        std::exit(0);
    }
    must(::unshare(CLONE_NEWNS | CLONE_NEWNET) == 0, "unshare");
    must(::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0, "mount");
    must(::mount("none", "/run", "tmpfs", 0, nullptr) == 0, "mount /run");
    must(::mkdir("/run/avahi-daemon", 0755) == 0, "/run/avahi-daemon");
    raiseLoopback();
}

bool PrivateAvahi::addInterfaces()
{
    const QList<QStringList> commands{{"link", "add", "left", "type", "veth", "peer", "name", "right"},
                                      {"address", "add", "10.9.1.1/24", "dev", "left"},
                                      {"address", "add", "10.9.2.1/24", "dev", "right"},
                                      {"link", "set", "left", "up"},
                                      {"link", "set", "right", "up"}};
    return std::all_of(commands.begin(), commands.end(),
                       [](const QStringList &command) { return QProcess::execute("ip", command) == 0; });
}

PrivateAvahi::PrivateAvahi()
{
    qDBusRegisterMetaType<QByteArrayList>();
    qputenv("DBUS_SYSTEM_BUS_ADDRESS", _busAddress().toLocal8Bit());
    for (QProcess *process : {&m_bus, &m_daemon}) {
        process->setStandardErrorFile(QProcess::nullDevice());
        process->setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGKILL); });
    }
}

PrivateAvahi::~PrivateAvahi()
{
    killDaemon();
    killBus();
}

bool PrivateAvahi::_write(const QString &name, const QByteArray &text) const
{
    QFile file(m_folder.filePath(name));
    return file.open(QIODevice::WriteOnly | QIODevice::Truncate) && file.write(text) == text.size();
}

bool PrivateAvahi::startBus()
{
    killBus();
    if (!_write("system.conf", QString(busConfiguration).arg(_busAddress()).toUtf8()))
        return false;
    m_bus.start("dbus-daemon",
                {"--config-file=" + m_folder.filePath("system.conf"), "--nofork", "--nopidfile", "--print-address"});
    return m_bus.waitForReadyRead(longEnough) &&
           QDBusConnection::connectToBus(_busAddress(), connectionName).isConnected();
}

bool PrivateAvahi::startDaemon(const QString &interfaces)
{
    killDaemon();
    if (!_write("avahi.conf", QString(daemonConfiguration).arg(interfaces).toUtf8()))
        return false;
    m_daemon.start("avahi-daemon",
                   {"--no-drop-root", "--no-chroot", "--no-rlimits", "-f", m_folder.filePath("avahi.conf")});
    const auto *bus = QDBusConnection(connectionName).interface();
    return QTest::qWaitFor([&] { return bus->isServiceRegistered(avahiService).value(); }, longEnough);
}

void PrivateAvahi::killBus()
{
    QDBusConnection::disconnectFromBus(connectionName);
    end(m_bus);
}

void PrivateAvahi::killDaemon()
{
    m_groups.clear();
    end(m_daemon);
    QFile::remove("/run/avahi-daemon/pid"); // it had no time to do that
}

void PrivateAvahi::pauseBus()
{
    ::kill(static_cast<pid_t>(m_bus.processId()), SIGSTOP);
}

void PrivateAvahi::pauseDaemon()
{
    ::kill(static_cast<pid_t>(m_daemon.processId()), SIGSTOP);
}

bool PrivateAvahi::announce(const QString &name, int port)
{
    const QString group = _newGroup();
    return _addService(group, name, {}, port) && _commit(name, group);
}

bool PrivateAvahi::announceOnIPv6(const QString &name, int port)
{
    const QString group = _newGroup();
    return _call(group, avahiGroup, "AddAddress",
                 {anyInterface, anyProtocol, 0U, QString("six.local"), QString("2001:db8::7")}) &&
           _addService(group, name, "six.local", port) && _commit(name, group);
}

bool PrivateAvahi::announceNameOnly(const QString &name)
{
    const ushort internet = 1;
    const ushort pointer = 12;
    const QString group = _newGroup();
    return _call(group, avahiGroup, "AddRecord",
                 {anyInterface, anyProtocol, 0U, QString("_http._tcp.local"), QVariant::fromValue(internet),
                  QVariant::fromValue(pointer), 120U, wireName(name, {"_http", "_tcp", "local"})}) &&
           _commit(name, group);
}

bool PrivateAvahi::withdraw(const QString &name)
{
    return _call(m_groups.take(name), avahiGroup, "Free", {});
}

QString PrivateAvahi::_newGroup()
{
    const QDBusReply<QDBusObjectPath> group =
        QDBusConnection(connectionName)
            .call(QDBusMessage::createMethodCall(avahiService, "/", avahiServer, "EntryGroupNew"));
    return group.value().path();
}

bool PrivateAvahi::_addService(const QString &group, const QString &name, const QString &host, int port)
{
    return _call(group, avahiGroup, "AddService",
                 {anyInterface, anyProtocol, 0U, name, QString("_http._tcp"), QString(), host,
                  QVariant::fromValue(ushort(port)), QVariant::fromValue(QByteArrayList())});
}

bool PrivateAvahi::_commit(const QString &name, const QString &group)
{
    m_groups.insert(name, group);
    return _call(group, avahiGroup, "Commit", {});
}

bool PrivateAvahi::_call(const QString &path, const QString &interface, const QString &method,
                         const QVariantList &arguments)
{
    QDBusMessage call = QDBusMessage::createMethodCall(avahiService, path, interface, method);
    call.setArguments(arguments);
    const QDBusMessage answer = QDBusConnection(connectionName).call(call);
    if (answer.type() == QDBusMessage::ErrorMessage)
        qWarning("%s: %s", qPrintable(method), qPrintable(answer.errorMessage()));
    return answer.type() == QDBusMessage::ReplyMessage;
}

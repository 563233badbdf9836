#include "LinuxInstanceLink.h"

#include "ApplicationService.h"
#include "BusProbe.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusReply>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

namespace platform
{

namespace
{
constexpr auto connectionName = "QWInstanceLink";
constexpr auto applicationInterface = "org.freedesktop.Application";
constexpr int answerMilliseconds = 3000;

constexpr std::chrono::seconds patienceWithBus(2);

/// As the environment names it; "" without one: the library would try to start a bus, which takes seconds.
QByteArray busAddress()
{
    if (qEnvironmentVariableIsSet("DBUS_SESSION_BUS_ADDRESS"))
        return qgetenv("DBUS_SESSION_BUS_ADDRESS");
    const QByteArray path = qgetenv("XDG_RUNTIME_DIR") + "/bus";
    return QFileInfo::exists(QFile::decodeName(path)) ? QByteArray("unix:path=" + path) : QByteArray();
}

/// Path of the application object, as the convention derives it from the name.
QString objectPath(const QString &service)
{
    return "/" + QString(service).replace(u'.', u'/').replace(u'-', u'_');
}

QString validElement(QString element)
{
    static const QRegularExpression unusable("[^A-Za-z0-9_-]");
    element.replace(unusable, "_");
    return element.isEmpty() || element.front().isDigit() ? QString("_" + element) : element;
}

QDBusMessage openCall(const QString &service, const QStringList &urls)
{
    const QString method = urls.isEmpty() ? "Activate" : "Open";
    auto message = QDBusMessage::createMethodCall(service, objectPath(service), applicationInterface, method);
    message.setAutoStartService(false);
    if (!urls.isEmpty())
        message << urls;
    return message << QVariantMap();
}
} // namespace

/// Owns the name on the bus and the object behind it.
class LinuxInstanceLink::Service
{
public:
    Service(QDBusConnection bus, QString name, std::function<void(const QString &)> received)
        : m_bus(std::move(bus))
        , m_name(std::move(name))
        , m_application(std::move(received))
    {
        // The object first: whoever sees the name finds it.
        m_owned = m_bus.registerObject(objectPath(m_name), &m_application, QDBusConnection::ExportScriptableSlots) &&
                  m_bus.registerService(m_name);
    }

    ~Service()
    {
        if (!QCoreApplication::instance())
            return; // the bus went with the application, and the name with it
        if (m_owned)
            m_bus.unregisterService(m_name);
        m_bus.unregisterObject(objectPath(m_name));
    }

    bool isOwned() const { return m_owned; }

private:
    QDBusConnection m_bus;
    QString m_name;
    ApplicationService m_application;
    bool m_owned = false;
};

void giveUpSilentBus()
{
    const QByteArray address = busAddress();
    if (address.isEmpty() || busAnswers(address, patienceWithBus))
        return;
    qWarning("The session bus does not answer and is given up");
    qputenv("DBUS_SESSION_BUS_ADDRESS", "disabled:");
}

LinuxInstanceLink::LinuxInstanceLink() = default;
LinuxInstanceLink::~LinuxInstanceLink() = default;

/// The session bus, connected to on first use; not connected when there is none, or one that lets nobody in.
QDBusConnection LinuxInstanceLink::_sessionBus()
{
    const QDBusConnection existing(connectionName);
    const QByteArray address = busAddress();
    if (existing.isConnected() || address.isEmpty() || address == m_silentBus)
        return existing;
    if (!busAnswers(address, patienceWithBus)) {
        qWarning("The session bus does not answer; this instance is on its own");
        m_silentBus = address;
        return existing;
    }
    const auto bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, connectionName);
    if (bus.isConnected())
        bus.interface()->setTimeout(static_cast<int>(std::chrono::milliseconds(patienceWithBus).count()));
    return bus;
}

bool LinuxInstanceLink::listen(const QString &bundleIdentifier, std::function<void(const QString &url)> received)
{
    m_service.reset();
    const QDBusConnection bus = _sessionBus();
    if (!bus.isConnected())
        return false;
    auto service = std::make_unique<Service>(bus, serviceName(bundleIdentifier), std::move(received));
    if (!service->isOwned())
        return false;
    m_service = std::move(service);
    return true;
}

bool LinuxInstanceLink::handOver(const QString &bundleIdentifier, const QStringList &urls)
{
    const QDBusConnection bus = _sessionBus();
    if (!bus.isConnected())
        return false;
    const QString service = serviceName(bundleIdentifier);
    const QDBusReply<QString> owner = bus.interface()->serviceOwner(service);
    if (!owner.isValid() || owner.value() == bus.baseService())
        return false;
    return bus.call(openCall(service, urls), QDBus::Block, answerMilliseconds).type() == QDBusMessage::ReplyMessage;
}

QString LinuxInstanceLink::serviceName(const QString &bundleIdentifier)
{
    QStringList elements = bundleIdentifier.split(u'.', Qt::SkipEmptyParts);
    for (QString &element : elements)
        element = validElement(element);
    while (elements.size() < 2)
        elements.prepend("application");
    return elements.join(u'.').left(255);
}

} // namespace platform

#include "ScreenReader.h"

#include <QAccessible>
#include <QDBusConnection>
#include <QTest>

namespace
{
QStringList focusedNames;
QStringList newNames;

void note(QAccessibleEvent *event)
{
    QAccessibleInterface *const object = event->accessibleInterface();
    if (object && event->type() == QAccessible::Focus)
        focusedNames.append(object->text(QAccessible::Name));
    if (object && event->type() == QAccessible::NameChanged)
        newNames.append(object->text(QAccessible::Name));
}

QString last(const QStringList &names)
{
    return names.value(names.size() - 1);
}
} // namespace

ScreenReader::ScreenReader()
{
    if (!m_server.isRunning() || !m_bus.start())
        qFatal("Xvfb or dbus-daemon does not start");
    qputenv("QT_LINUX_ACCESSIBILITY_ALWAYS_ON", "1"); // root too
}

ScreenReader::~ScreenReader() = default;

bool ScreenReader::listen()
{
    QDBusConnection session = QDBusConnection::sessionBus();
    if (!session.registerObject("/org/a11y/bus", this, QDBusConnection::ExportAllSlots) ||
        !session.registerService("org.a11y.Bus") || !QTest::qWaitFor([] { return QAccessible::isActive(); }))
        return false;
    QAccessible::installUpdateHandler(&note);
    return true;
}

void ScreenReader::forget()
{
    focusedNames.clear();
    newNames.clear();
}

QString ScreenReader::focused()
{
    return last(focusedNames);
}

bool ScreenReader::heard(const QString &name)
{
    return newNames.contains(name);
}

QString ScreenReader::renamed()
{
    return last(newNames);
}

QString ScreenReader::GetAddress()
{
    return qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS");
}

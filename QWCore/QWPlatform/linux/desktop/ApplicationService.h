#pragma once

#include <QObject>
#include <QVariantMap>

#include <functional>

namespace platform
{

/// The object that other instances, and the desktop, call over the bus.
class ApplicationService : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    explicit ApplicationService(std::function<void(const QString &url)> received);

public Q_SLOTS:
    // The names are the bus interface's own.
    Q_SCRIPTABLE void Activate(const QVariantMap &platformData);
    Q_SCRIPTABLE void Open(const QStringList &uris, const QVariantMap &platformData);
    Q_SCRIPTABLE void ActivateAction(const QString &name, const QVariantList &parameter,
                                     const QVariantMap &platformData);

private:
    std::function<void(const QString &url)> m_received;
};

} // namespace platform

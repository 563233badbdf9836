#pragma once

#include "QWPlatform/appkit/windows/InstanceLink.h"

#include <QWPlatform/qwplatform_private.h>

#include <QByteArray>

#include <memory>

class QDBusConnection;

namespace platform
{

/// The instance link as the desktop's own D-Bus convention has it: the instance owns the name of its bundle
/// identifier and takes addresses through org.freedesktop.Application. Connects to the bus when first asked.
class QWPLATFORM_TEST_EXPORT LinuxInstanceLink : public InstanceLink
{
public:
    LinuxInstanceLink();
    ~LinuxInstanceLink() override;

    bool listen(const QString &bundleIdentifier, std::function<void(const QString &url)> received) override;
    bool handOver(const QString &bundleIdentifier, const QStringList &urls) override;

    /// The bus name for @p bundleIdentifier: characters that a name cannot hold become "_", and an element that starts
    /// with a digit gets one in front; at least two elements.
    static QString serviceName(const QString &bundleIdentifier);

private:
    class Service;

    QDBusConnection _sessionBus();

    QByteArray m_silentBus;             ///< Address of a bus that did not answer, which is not asked again.
    std::unique_ptr<Service> m_service; ///< Set while this is the instance that URLs are handed to.
};

} // namespace platform

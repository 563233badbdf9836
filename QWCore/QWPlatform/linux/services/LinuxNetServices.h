#pragma once

#include "QWPlatform/network/services/NetServices.h"
#include "ServiceSession.h"

#include <QWPlatform/qwplatform_private.h>

#include <optional>

namespace platform
{

/// Services that Avahi knows, and those of a list (listedServices()) beside them: the environment variable
/// QW_NET_SERVICES as it is when a browser is made.
class QWPLATFORM_TEST_EXPORT LinuxNetServices : public NetServices
{
public:
    LinuxNetServices();

    /// With another list and another daemon, for tests.
    LinuxNetServices(QString list, ServiceSession::Daemon daemon);

    std::unique_ptr<NetServiceBrowser> makeBrowser() override;

private:
    const std::optional<QString> m_list; ///< None: that of the environment.
    const ServiceSession::Daemon m_daemon;
};

} // namespace platform

#pragma once

#include "QWPlatform/network/services/NetServices.h"
#include "ServiceSession.h"

#include <QWPlatform/qwplatform_private.h>

namespace platform
{

/// Services that Avahi knows, and those of a list (listedServices()) beside them.
class QWPLATFORM_TEST_EXPORT LinuxNetServices : public NetServices
{
public:
    /// @p list is read when a search begins.
    explicit LinuxNetServices(QString list);

    /// With another @p daemon, for tests.
    LinuxNetServices(QString list, ServiceSession::Daemon daemon);

    std::unique_ptr<NetServiceBrowser> makeBrowser() override;

private:
    const QString m_list;
    const ServiceSession::Daemon m_daemon;
};

} // namespace platform

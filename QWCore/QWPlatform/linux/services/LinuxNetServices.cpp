#include "LinuxNetServices.h"

#include "AvahiLoader.h"
#include "LinuxNetServiceBrowser.h"

#include <utility>

namespace platform
{

LinuxNetServices::LinuxNetServices()
    : m_daemon(avahiConversation)
{
}

LinuxNetServices::LinuxNetServices(QString list, ServiceSession::Daemon daemon)
    : m_list(std::move(list))
    , m_daemon(std::move(daemon))
{
}

std::unique_ptr<NetServiceBrowser> LinuxNetServices::makeBrowser()
{
    return std::make_unique<LinuxNetServiceBrowser>(m_list.value_or(qEnvironmentVariable("QW_NET_SERVICES")), m_daemon);
}

} // namespace platform

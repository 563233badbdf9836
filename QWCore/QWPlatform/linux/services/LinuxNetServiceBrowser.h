#pragma once

#include "ListedServices.h"
#include "QWPlatform/network/services/NetServiceBrowser.h"
#include "ServicePresence.h"
#include "ServiceSession.h"

#include <QObject>

#include <map>
#include <vector>

namespace platform
{

/// Finds what the daemon announces, and the services of the environment's list, which come first.
class LinuxNetServiceBrowser : public NetServiceBrowser, private ServiceSearchObserver
{
public:
    LinuxNetServiceBrowser(QString list, ServiceSession::Daemon daemon);
    ~LinuxNetServiceBrowser() override;

    void setDelegate(NetServiceBrowserDelegate *delegate) override { m_delegate = delegate; }
    void searchForServicesOfTypeInDomain(const QString &type, const QString &domain) override;
    void stop() override;

private:
    struct Change
    {
        bool isFound; ///< Else it has gone.
        ServiceName name;
    };

    void servicesChanged(const std::vector<ServiceEvent> &events) override;
    void searchFailed(const std::string &reason) override;

    void _announceListed();
    void _tell(const std::vector<Change> &changes);
    std::shared_ptr<NetService> _make(const ServiceName &name) const;

    const QString m_list;
    const ServiceSession::Daemon m_daemon;
    NetServiceBrowserDelegate *m_delegate = nullptr;
    std::vector<ServiceName> m_listed; ///< Of the search that is going on, in their order.
    std::map<ServiceName, ListedService> m_listedByName;
    ServicePresence m_presence;
    std::shared_ptr<ServiceSession> m_session;
    std::unique_ptr<QObject> m_receiver; ///< Of what is posted for the search that is going on.
    std::shared_ptr<bool> m_search;      ///< Whoever calls out sees whether that search still goes on.
};

} // namespace platform

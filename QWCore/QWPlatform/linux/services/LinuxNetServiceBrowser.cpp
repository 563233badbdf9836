#include "LinuxNetServiceBrowser.h"

#include "LinuxNetService.h"

#include <QDebug>

#include <utility>

namespace platform
{

namespace
{
/// Interfaces have numbers from 1 on.
constexpr ServicePresence::Place listedPlace{0, 0};

ServiceName nameOf(const ListedService &service)
{
    return {service.name.toStdString(), listedServiceType, listedServiceDomain};
}
} // namespace

LinuxNetServiceBrowser::LinuxNetServiceBrowser(QString list, ServiceSession::Daemon daemon)
    : m_list(std::move(list))
    , m_daemon(std::move(daemon))
{
}

LinuxNetServiceBrowser::~LinuxNetServiceBrowser()
{
    LinuxNetServiceBrowser::stop();
}

void LinuxNetServiceBrowser::searchForServicesOfTypeInDomain(const QString &type, const QString &domain)
{
    stop();
    m_search = std::make_shared<bool>();
    m_receiver = std::make_unique<QObject>();
    if (type == listedServiceType && domain == listedServiceDomain)
        for (const ListedService &service : listedServices(m_list)) {
            m_listed.push_back(nameOf(service));
            m_listedByName.emplace(nameOf(service), service);
        }
    if (!m_listed.empty()) // posted before the daemon's thread can say anything
        QMetaObject::invokeMethod(
            m_receiver.get(), [this] { _announceListed(); }, Qt::QueuedConnection);
    m_session = std::make_shared<ServiceSession>(m_daemon);
    m_session->search({.name = {}, .type = type.toStdString(), .domain = domain.toStdString()}, *this);
}

void LinuxNetServiceBrowser::stop()
{
    if (m_session)
        m_session->stopSearch(); // services that are being resolved still hold it
    m_session.reset();
    m_receiver.reset();
    m_search.reset();
    m_presence.clear();
    m_listed.clear();
    m_listedByName.clear();
}

void LinuxNetServiceBrowser::_announceListed()
{
    std::vector<Change> changes;
    for (const ServiceName &name : m_listed)
        if (m_presence.appeared(name, listedPlace))
            changes.push_back({.isFound = true, .name = name});
    _tell(changes);
}

void LinuxNetServiceBrowser::servicesChanged(const std::vector<ServiceEvent> &events)
{
    std::vector<Change> changes;
    for (const ServiceEvent &event : events) {
        const ServicePresence::Place place{event.interface, event.protocol};
        const bool isFound = event.kind == ServiceEvent::Kind::Appeared;
        if (isFound ? m_presence.appeared(event.service, place) : m_presence.vanished(event.service, place))
            changes.push_back({.isFound = isFound, .name = event.service});
    }
    _tell(changes);
}

void LinuxNetServiceBrowser::_tell(const std::vector<Change> &changes)
{
    const std::weak_ptr<bool> search = m_search;
    for (const Change &change : changes) {
        if (search.expired() || !m_delegate)
            return;
        const bool moreComing = &change != &changes.back();
        if (change.isFound)
            m_delegate->netServiceBrowserDidFindService(*this, _make(change.name), moreComing);
        else
            m_delegate->netServiceBrowserDidRemoveService(*this, _make(change.name), moreComing);
    }
}

std::shared_ptr<NetService> LinuxNetServiceBrowser::_make(const ServiceName &name) const
{
    if (const auto listed = m_listedByName.find(name); listed != m_listedByName.end())
        return std::make_shared<LinuxNetService>(listed->second);
    return std::make_shared<LinuxNetService>(name, m_session, m_daemon);
}

void LinuxNetServiceBrowser::searchFailed(const std::string &reason)
{
    if (!m_listed.empty()) {
        qWarning("Only the services of QW_NET_SERVICES are found: %s", reason.c_str());
        return;
    }
    const auto session = std::exchange(m_session, nullptr); // it calls this
    stop();
    if (m_delegate)
        m_delegate->netServiceBrowserDidNotSearch(*this, {{"reason", QString::fromStdString(reason)}});
}

} // namespace platform

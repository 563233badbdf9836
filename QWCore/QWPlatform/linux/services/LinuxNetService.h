#pragma once

#include "ListedServices.h"
#include "QWPlatform/network/services/NetService.h"
#include "ServiceSession.h"

#include <QTimer>

#include <memory>
#include <optional>

namespace platform
{

/// Type and domain of all services in the list of the environment.
constexpr auto listedServiceType = "_http._tcp.";
constexpr auto listedServiceDomain = "local.";

/// A service that a browser has found. It may outlive that: whoever resolves it later has a session begun for it.
class LinuxNetService : public NetService, private ServiceQuestionObserver
{
public:
    /// One that the daemon announces.
    LinuxNetService(ServiceName name, std::weak_ptr<ServiceSession> session, ServiceSession::Daemon daemon);

    /// One of the list.
    explicit LinuxNetService(const ListedService &listed);

    ~LinuxNetService() override;

    QString name() const override;
    QString type() const override;
    QString domain() const override;
    void setDelegate(NetServiceDelegate *delegate) override { m_delegate = delegate; }
    void resolveWithTimeout(std::chrono::milliseconds timeout) override;
    QList<QByteArray> addresses() const override { return m_addresses; }
    int port() const override { return m_port; }

private:
    void questionAnswered(const QList<QByteArray> &addresses, int port) override;
    void questionFailed(const std::string &reason) override;

    void _ask();
    void _endQuestion();

    const ServiceName m_name;
    const std::optional<ListedService> m_listed;
    std::weak_ptr<ServiceSession> m_session; ///< That of the browser that found it.
    ServiceSession::Daemon m_daemon;
    NetServiceDelegate *m_delegate = nullptr;
    QList<QByteArray> m_addresses;
    int m_port = -1;

    std::shared_ptr<ServiceSession> m_asked; ///< Lives at least until it has answered; null while nothing is asked.
    std::uint64_t m_question = 0;
    QTimer m_timer; ///< Beside the daemon's own, which a daemon that hangs does not keep. A listed one answers by it.
};

} // namespace platform

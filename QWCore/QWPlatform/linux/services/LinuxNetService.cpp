#include "LinuxNetService.h"

#include <utility>

namespace platform
{

LinuxNetService::LinuxNetService(ServiceName name, std::weak_ptr<ServiceSession> session, ServiceSession::Daemon daemon)
    : m_name(std::move(name))
    , m_session(std::move(session))
    , m_daemon(std::move(daemon))
{
    m_timer.setSingleShot(true);
    QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] { questionFailed("nobody answered in time"); });
}

LinuxNetService::LinuxNetService(const ListedService &listed)
    : m_name{listed.name.toStdString(), listedServiceType, listedServiceDomain}
    , m_listed(listed)
{
    m_timer.setSingleShot(true);
    QObject::connect(&m_timer, &QTimer::timeout, &m_timer,
                     [this] { questionAnswered({m_listed->address}, m_listed->port); });
}

LinuxNetService::~LinuxNetService()
{
    _endQuestion();
}

QString LinuxNetService::name() const
{
    return QString::fromStdString(m_name.name);
}

QString LinuxNetService::type() const
{
    return QString::fromStdString(m_name.type);
}

QString LinuxNetService::domain() const
{
    return QString::fromStdString(m_name.domain);
}

void LinuxNetService::resolveWithTimeout(std::chrono::milliseconds timeout)
{
    _endQuestion();
    if (!m_listed)
        _ask();
    m_timer.start(m_listed ? std::chrono::milliseconds(0) : timeout);
}

void LinuxNetService::_ask()
{
    m_asked = m_session.lock();
    if (!m_asked || m_asked->isOver())
        m_asked = std::make_shared<ServiceSession>(m_daemon);
    m_question = m_asked->ask(m_name, *this);
}

void LinuxNetService::_endQuestion()
{
    m_timer.stop();
    if (const auto asked = std::exchange(m_asked, nullptr))
        asked->forget(m_question);
}

void LinuxNetService::questionAnswered(const QList<QByteArray> &addresses, int port)
{
    const auto asked = m_asked; // it calls this, and lives until it has returned
    _endQuestion();
    m_addresses = addresses;
    m_port = port;
    if (m_delegate)
        m_delegate->netServiceDidResolveAddress(*this);
}

void LinuxNetService::questionFailed(const std::string &reason)
{
    const auto asked = m_asked;
    _endQuestion();
    if (m_delegate)
        m_delegate->netServiceDidNotResolve(*this, {{"reason", QString::fromStdString(reason)}});
}

} // namespace platform

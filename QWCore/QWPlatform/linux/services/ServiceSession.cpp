#include "ServiceSession.h"

#include <system_error>
#include <thread>
#include <utility>

namespace platform
{

namespace
{
constexpr auto patienceWithDaemon = std::chrono::seconds(5);

/// Runs on the thread of the session.
void speak(const ServiceSession::Conversation &conversation, ServiceExchange &exchange)
{
    try {
        conversation(exchange);
    } catch (const std::exception &exception) {
        exchange.publishFailure(exception.what());
    }
}

bool isChange(const ServiceEvent &event)
{
    return event.kind == ServiceEvent::Kind::Appeared || event.kind == ServiceEvent::Kind::Vanished;
}

QList<QByteArray> rawAddressesOf(const std::vector<std::string> &addresses)
{
    QList<QByteArray> list;
    for (const std::string &address : addresses)
        list.append(QByteArray::fromStdString(address));
    return list;
}
} // namespace

ServiceSession::ServiceSession(const Daemon &daemon)
    : m_exchange(std::make_shared<ServiceExchange>([this] {
        QMetaObject::invokeMethod(
            &m_receiver, [this] { _deliver(); }, Qt::QueuedConnection);
    }))
{
    QObject::connect(&m_patience, &QTimer::timeout, &m_receiver, [this] { _fail("the daemon does not answer"); });
    m_patience.setSingleShot(true);
    m_patience.start(patienceWithDaemon);
    _start(daemon());
}

ServiceSession::~ServiceSession()
{
    m_exchange->close();
}

void ServiceSession::_start(const Conversation &conversation)
{
    try {
        std::thread([conversation, exchange = m_exchange] { speak(conversation, *exchange); }).detach();
    } catch (const std::system_error &error) {
        m_exchange->publishFailure(error.what());
    }
}

void ServiceSession::search(const ServiceName &typeAndDomain, ServiceSearchObserver &observer)
{
    m_search = &observer;
    m_exchange->send({.kind = ServiceCommand::Kind::Search, .service = typeAndDomain});
}

void ServiceSession::stopSearch()
{
    m_search = nullptr;
    m_exchange->send({.kind = ServiceCommand::Kind::StopSearch});
}

std::uint64_t ServiceSession::ask(const ServiceName &service, ServiceQuestionObserver &observer)
{
    m_questions[++m_lastQuestion] = &observer;
    m_exchange->send({.kind = ServiceCommand::Kind::Resolve, .service = service, .question = m_lastQuestion});
    return m_lastQuestion;
}

void ServiceSession::forget(std::uint64_t question)
{
    if (m_questions.erase(question) != 0)
        m_exchange->send({.kind = ServiceCommand::Kind::Forget, .question = question});
}

void ServiceSession::_deliver()
{
    const std::weak_ptr<bool> life = m_life;
    std::vector<ServiceEvent> changes;
    const std::vector<ServiceEvent> events = m_exchange->takeEvents();
    for (const ServiceEvent &event : events)
        if (isChange(event))
            changes.push_back(event);
    if (!changes.empty() && m_search)
        m_search->servicesChanged(changes);
    for (const ServiceEvent &event : events)
        if (!life.expired() && !isChange(event))
            _answer(event);
}

void ServiceSession::_answer(const ServiceEvent &event)
{
    m_patience.stop();
    if (event.kind == ServiceEvent::Kind::Failed)
        return _fail(event.reason);
    const auto asked = m_questions.extract(event.question);
    if (asked.empty()) // nobody wants to know, or it has only begun
        return;
    if (event.kind == ServiceEvent::Kind::Resolved)
        asked.mapped()->questionAnswered(rawAddressesOf(event.addresses), event.port);
    else
        asked.mapped()->questionFailed(event.reason);
}

void ServiceSession::_fail(const std::string &reason)
{
    const std::weak_ptr<bool> life = m_life;
    m_isOver = true;
    m_patience.stop();
    m_exchange->close();
    if (ServiceSearchObserver *search = std::exchange(m_search, nullptr))
        search->searchFailed(reason);
    while (!life.expired() && !m_questions.empty())
        m_questions.extract(m_questions.begin()).mapped()->questionFailed(reason);
}

} // namespace platform

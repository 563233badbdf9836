#pragma once

#include "ServiceExchange.h"

#include <QWPlatform/qwplatform_private.h>

#include <QList>
#include <QObject>
#include <QTimer>

#include <functional>
#include <map>
#include <memory>

namespace platform
{

/// Told what a search finds. May stop the search or end the session in any of the calls.
class ServiceSearchObserver
{
public:
    virtual ~ServiceSearchObserver() = default;
    virtual void servicesChanged(const std::vector<ServiceEvent> &events) = 0; ///< They appeared and vanished.
    virtual void searchFailed(const std::string &reason) = 0;
};

/// Told the answer of one question, or that there is none.
class ServiceQuestionObserver
{
public:
    virtual ~ServiceQuestionObserver() = default;
    virtual void questionAnswered(const QList<QByteArray> &addresses, int port) = 0;
    virtual void questionFailed(const std::string &reason) = 0;
};

/// One conversation with the daemon that knows what is announced. It has a thread of its own: the library that speaks
/// to the daemon waits for an answer up to half a minute, and nothing can interrupt it. Nobody waits for the thread;
/// it ends by itself when the session goes. Main thread, which also hears everything, from the event loop.
class QWPLATFORM_TEST_EXPORT ServiceSession
{
public:
    /// Speaks to the daemon on the thread that it is called on, until the exchange is closed or it has told of a
    /// failure.
    using Conversation = std::function<void(ServiceExchange &)>;

    /// Prepares a conversation on the main thread; what that loads must not meet the end of the process.
    using Daemon = std::function<Conversation()>;

    explicit ServiceSession(const Daemon &daemon);
    ~ServiceSession();
    ServiceSession(const ServiceSession &) = delete;
    ServiceSession &operator=(const ServiceSession &) = delete;

    /// Searches until stopSearch(); one search at a time. @p observer is not owned.
    void search(const ServiceName &typeAndDomain, ServiceSearchObserver &observer);
    void stopSearch();

    /// Asks for addresses and port; the number is for forget(). @p observer is not owned and hears once.
    std::uint64_t ask(const ServiceName &service, ServiceQuestionObserver &observer);
    void forget(std::uint64_t question);

    /// The daemon has gone: a new session must be begun.
    bool isOver() const { return m_isOver; }

private:
    void _start(const Conversation &conversation);
    void _deliver();
    void _answer(const ServiceEvent &event);
    void _fail(const std::string &reason);

    QObject m_receiver; ///< What is posted to the main thread dies with it.
    std::shared_ptr<ServiceExchange> m_exchange;
    QTimer m_patience; ///< With a daemon that takes calls and does not answer.
    ServiceSearchObserver *m_search = nullptr;
    std::map<std::uint64_t, ServiceQuestionObserver *> m_questions;
    std::uint64_t m_lastQuestion = 0;
    bool m_isOver = false;
    std::shared_ptr<bool> m_life = std::make_shared<bool>(); ///< Whoever calls out sees whether this still lives.
};

} // namespace platform

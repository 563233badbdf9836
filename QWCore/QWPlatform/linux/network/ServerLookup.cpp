#include "ServerLookup.h"

#include "DesktopProxies.h"

#include <QHostAddress>
#include <QNetworkProxy>
#include <QUrl>

#include <mutex>
#include <netdb.h>
#include <system_error>
#include <thread>
#include <utility>

namespace platform
{

struct ServerLookup::Answer
{
    std::mutex mutex; ///< Guards the asker.
    ServerLookup *asker = nullptr;
    QNetworkProxy proxy{QNetworkProxy::NoProxy};
    bool isKnown = false;
};

namespace
{
bool isKnownName(const QString &host)
{
    if (!QHostAddress(host).isNull())
        return true;
    addrinfo hints{};
    hints.ai_socktype = SOCK_STREAM;
    addrinfo *addresses = nullptr;
    const bool known = ::getaddrinfo(QUrl::toAce(host).constData(), nullptr, &hints, &addresses) == 0;
    if (known)
        ::freeaddrinfo(addresses);
    return known;
}

/// Of the machine that is called first.
QString firstHost(const QNetworkProxy &proxy, const QUrl &url)
{
    return proxy.type() == QNetworkProxy::NoProxy ? url.host() : proxy.hostName();
}
} // namespace

ServerLookup::ServerLookup() = default;

ServerLookup::~ServerLookup()
{
    ServerLookup::cancel();
}

void ServerLookup::start(const QUrl &url)
{
    cancel();
    m_answer = std::make_shared<Answer>();
    m_answer->asker = this;
    const auto ask = [answer = m_answer, url] {
        answer->proxy = proxyFor(url);
        answer->isKnown = isKnownName(firstHost(answer->proxy, url));
        const std::lock_guard lock(answer->mutex);
        if (answer->asker)
            QMetaObject::invokeMethod(
                answer->asker,
                [answer] {
                    if (ServerLookup *const asker = answer->asker) // forgotten meanwhile, else
                        asker->_take(answer);
                },
                Qt::QueuedConnection);
    };
    try {
        std::thread(ask).detach();
    } catch (const std::system_error &) {
        ask(); // no thread is to be had: better to wait than not to load
    }
}

void ServerLookup::cancel()
{
    if (const auto answer = std::exchange(m_answer, nullptr)) {
        const std::lock_guard lock(answer->mutex);
        answer->asker = nullptr;
    }
}

void ServerLookup::_take(const std::shared_ptr<Answer> &answer)
{
    if (answer != m_answer) // asked anew meanwhile
        return;
    m_answer.reset();
    if (answer->isKnown)
        Q_EMIT found(answer->proxy);
    else
        Q_EMIT failed();
}

} // namespace platform

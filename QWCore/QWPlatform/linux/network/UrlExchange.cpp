#include "UrlExchange.h"

#include "NetworkRequests.h"

#include <QFileInfo>
#include <QNetworkProxy>
#include <QNetworkReply>

#include <algorithm>
#include <utility>

namespace platform
{

namespace
{
constexpr qint64 bufferSize = 256 * 1024;
constexpr int mostRedirections = 20;
constexpr int statusNoContent = 204;
constexpr int statusNotModified = 304;
constexpr int statusTemporaryRedirect = 307;
constexpr int statusPermanentRedirect = 308;

/// Others are followed by asking with GET, whatever was asked before.
bool keepsMethod(int status)
{
    return status == statusTemporaryRedirect || status == statusPermanentRedirect;
}

/// Qt begins with the request from the loop, and forgets what it was told before. A large answer would then lie in
/// memory whole where it comes faster than it is read.
void limitBuffer(QNetworkReply &reply)
{
    const auto limit = [&reply] { reply.setReadBufferSize(bufferSize); };
    QMetaObject::invokeMethod(&reply, limit, Qt::QueuedConnection);
    QObject::connect(&reply, &QNetworkReply::requestSent, &reply, limit);
}

/// What came safely is not handed on in the clear, and no server leads to files.
bool mayFollow(const QUrl &from, const QUrl &to)
{
    return isLoadable(to) && !to.isLocalFile() && (from.scheme() != u"https" || to.scheme() == u"https");
}
} // namespace

void UrlExchange::DeleteReply::operator()(QNetworkReply *reply) const
{
    reply->disconnect();
    reply->abort();
    delete reply;
}

UrlExchange::UrlExchange(UrlRequest request, std::chrono::milliseconds inactivity)
    : m_request(std::move(request))
    , m_inactivity(inactivity)
{
    m_idle.setSingleShot(true);
    connect(&m_idle, &QTimer::timeout, this, &UrlExchange::_timeOut);
    connect(&m_lookup, &ServerLookup::found, this, &UrlExchange::_send);
    connect(&m_lookup, &ServerLookup::failed, this,
            [this] { _fail(translated("The server “%1” was not found.").arg(m_request.url.host())); });
}

UrlExchange::~UrlExchange() = default;

void UrlExchange::start()
{
    _restartClock();
    if (m_request.url.isLocalFile())
        QMetaObject::invokeMethod(this, &UrlExchange::_sendToFile, Qt::QueuedConnection);
    else
        m_lookup.start(m_request.url);
}

int UrlExchange::status() const
{
    return m_reply ? statusOf(*m_reply) : 0;
}

QByteArray UrlExchange::header(const char *name) const
{
    return m_reply ? m_reply->rawHeader(name) : QByteArray();
}

qint64 UrlExchange::expectedLength() const
{
    return m_reply ? platform::expectedLength(*m_reply) : -1;
}

QByteArray UrlExchange::read(qint64 most)
{
    // Room is made for what is asked for, not for what is there.
    const QByteArray data = m_reply ? m_reply->read(std::min(most, m_reply->bytesAvailable())) : QByteArray();
    m_received += data.size();
    return data;
}

QString UrlExchange::failure() const
{
    if (!m_failure.isEmpty())
        return m_failure;
    if (!m_reply || !m_reply->isFinished())
        return translated("The request was cancelled.");
    if (failedOnTheWay(*m_reply))
        return m_reply->errorString();
    if (_bringsBody() && m_received < expectedLength())
        return translated("The connection was lost before the whole answer arrived.");
    return {};
}

/// Some answers announce a length and have none.
bool UrlExchange::_bringsBody() const
{
    return m_request.method != "HEAD" && status() != statusNoContent && status() != statusNotModified;
}

/// A pipe or a device would never end, and hold this thread meanwhile.
void UrlExchange::_sendToFile()
{
    const QFileInfo file(m_request.url.toLocalFile());
    if (file.exists() && !file.isFile())
        return _fail(translated("The address cannot be loaded."));
    m_reply.reset(m_network.get(networkRequest(m_request))); // files know no methods
    _connectReply();
}

void UrlExchange::_send(const QNetworkProxy &proxy)
{
    m_network.setProxy(proxy);
    m_reply.reset(m_network.sendCustomRequest(networkRequest(m_request), m_request.method, m_request.body));
    limitBuffer(*m_reply);
    _connectReply();
}

void UrlExchange::_connectReply()
{
    const QNetworkReply *const reply = m_reply.get();
    connect(reply, &QNetworkReply::uploadProgress, this, &UrlExchange::_restartClock);
    connect(reply, &QNetworkReply::metaDataChanged, this, &UrlExchange::_restartClock);
    connect(reply, &QNetworkReply::readyRead, this, &UrlExchange::_restartClock);
    // From the loop: whoever hears of it may destroy the exchange, and the reply is not done with it yet.
    connect(reply, &QNetworkReply::metaDataChanged, this, &UrlExchange::_respond, Qt::QueuedConnection);
    connect(reply, &QNetworkReply::readyRead, this, &UrlExchange::readyRead, Qt::QueuedConnection);
    connect(reply, &QNetworkReply::finished, this, &UrlExchange::_finish, Qt::QueuedConnection);
    if (reply->isFinished())
        QMetaObject::invokeMethod(this, &UrlExchange::_finish, Qt::QueuedConnection);
}

void UrlExchange::_respond()
{
    if (!m_reply) // was of a reply that led elsewhere
        return;
    const QUrl target = m_reply->attribute(QNetworkRequest::RedirectionTargetAttribute).toUrl();
    if (target.isEmpty() || !m_failure.isEmpty())
        Q_EMIT responded();
    else
        _follow(m_request.url.resolved(target));
}

/// Not left to Qt, which would ask for the new server's name in a way that the end of the process waits for.
void UrlExchange::_follow(const QUrl &url)
{
    if (++m_redirections > mostRedirections)
        return _fail(translated("The address leads to another one again and again."));
    if (!mayFollow(m_request.url, url))
        return _fail(translated("The address leads to one that cannot be loaded."));
    _restartClock();
    if (m_request.method != "HEAD" && !keepsMethod(status())) {
        m_request.method = "GET";
        m_request.body.clear();
    }
    if (url.authority() != m_request.url.authority())
        m_request.headers.clear(); // what one server was told is not told another
    m_request.url = url;
    m_reply.reset();
    m_lookup.start(url);
}

void UrlExchange::_timeOut()
{
    m_hasTimedOut = true;
    _fail(translated("The request timed out."));
}

void UrlExchange::_fail(const QString &description)
{
    m_failure = description;
    m_lookup.cancel();
    QMetaObject::invokeMethod(this, &UrlExchange::_finish, Qt::QueuedConnection);
}

void UrlExchange::_finish()
{
    const bool hasEnded = !m_failure.isEmpty() || (m_reply && m_reply->isFinished());
    if (!hasEnded) // was of a reply that led elsewhere
        return;
    m_idle.stop();
    if (!std::exchange(m_hasFinished, true))
        Q_EMIT finished();
}

} // namespace platform

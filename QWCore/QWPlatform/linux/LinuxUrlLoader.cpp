#include "LinuxUrlLoader.h"

#include "NetworkRequests.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QThread>
#include <QTimer>

#include <algorithm>
#include <memory>
#include <thread>

namespace platform
{

namespace
{
/// Qt's translations, since platform::localized() belongs to the main thread.
QString translated(const char *text)
{
    return QCoreApplication::translate("platform::UrlLoader", text);
}

QNetworkReply *send(QNetworkAccessManager &manager, const UrlRequest &request)
{
    const QNetworkRequest network = networkRequest(request);
    if (request.url.isLocalFile()) // these know no methods
        return manager.get(network);
    return manager.sendCustomRequest(network, request.method, request.body);
}

struct DeleteReply
{
    void operator()(QNetworkReply *reply) const
    {
        reply->disconnect();
        reply->abort();
        delete reply;
    }
};

/// One reply that is read into memory until it ends or breaks a limit.
class Load
{
public:
    Load(QNetworkAccessManager &manager, const UrlRequest &request, const LinuxUrlLoader::Limits &limits,
         QEventLoop &loop)
        : m_limits(limits)
        , m_loop(loop)
        , m_reply(send(manager, request))
    {
        m_idle.setSingleShot(true);
        QObject::connect(&m_idle, &QTimer::timeout, &loop, [this] { _fail(translated("The request timed out.")); });
        QObject::connect(m_reply.get(), &QNetworkReply::readyRead, &loop, [this] { _read(); });
        QObject::connect(m_reply.get(), &QNetworkReply::uploadProgress, &loop, [this] { _restartClock(); });
        QObject::connect(m_reply.get(), &QNetworkReply::metaDataChanged, &loop, [this] { _checkLength(); });
        QObject::connect(m_reply.get(), &QNetworkReply::finished, &loop, &QEventLoop::quit);
        _restartClock();
    }

    /// What came, once the loop has ended.
    UrlResponse response()
    {
        if (!m_reply->isFinished() && m_response.error.isEmpty())
            m_response.error = translated("The request was cancelled.");
        if (m_response.error.isEmpty())
            _takeResult();
        return m_response;
    }

    bool isRunning() const { return !m_reply->isFinished(); }

private:
    void _restartClock() { m_idle.start(m_limits.inactivity); }

    void _checkLength()
    {
        _restartClock();
        if (expectedLength(*m_reply) > m_limits.bodySize)
            _fail(translated("The answer is too large."));
    }

    void _read()
    {
        _restartClock();
        m_response.body += m_reply->readAll();
        if (m_response.body.size() > m_limits.bodySize)
            _fail(translated("The answer is too large."));
    }

    void _takeResult()
    {
        m_response.body += m_reply->readAll();
        const qint64 expected = expectedLength(*m_reply);
        m_response.status = statusOf(*m_reply);
        if (failedOnTheWay(*m_reply))
            m_response.error = m_reply->errorString();
        else if (m_response.body.size() > m_limits.bodySize)
            m_response.error = translated("The answer is too large.");
        else if (expected >= 0 && m_response.body.size() < expected && !isHead())
            m_response.error = translated("The connection was lost before the whole answer arrived.");
    }

    bool isHead() const { return m_reply->operation() == QNetworkAccessManager::HeadOperation; }

    void _fail(const QString &description)
    {
        m_response.error = description;
        m_loop.quit();
    }

    const LinuxUrlLoader::Limits m_limits;
    QEventLoop &m_loop;
    QTimer m_idle;
    UrlResponse m_response;
    std::unique_ptr<QNetworkReply, DeleteReply> m_reply;
};
} // namespace

/// Keeps a call's loop in the list of those that cancelAll() ends.
class LinuxUrlLoader::Running
{
public:
    Running(LinuxUrlLoader &loader, QEventLoop &loop)
        : m_loader(loader)
        , m_loop(loop)
    {
        const std::lock_guard lock(m_loader.m_mutex);
        m_loader.m_loops.push_back(&m_loop);
        if (m_loader.m_cancelled)
            QMetaObject::invokeMethod(&m_loop, &QEventLoop::quit, Qt::QueuedConnection);
    }

    ~Running()
    {
        const std::lock_guard lock(m_loader.m_mutex);
        std::erase(m_loader.m_loops, &m_loop);
    }

private:
    LinuxUrlLoader &m_loader;
    QEventLoop &m_loop;
};

LinuxUrlLoader::LinuxUrlLoader() = default;

LinuxUrlLoader::LinuxUrlLoader(Limits limits)
    : m_limits(limits)
{
}

UrlResponse LinuxUrlLoader::load(const UrlRequest &request)
{
    if (!QCoreApplication::instance() || QThread::currentThread() != QCoreApplication::instance()->thread())
        return _loadHere(request);
    // The main thread only waits: the load's loop must not deliver the application's own events.
    UrlResponse response;
    std::thread([&] { response = _loadHere(request); }).join();
    return response;
}

UrlResponse LinuxUrlLoader::_loadHere(const UrlRequest &request)
{
    if (!isLoadable(request.url))
        return {.status = 0, .body = {}, .error = translated("The address cannot be loaded.")};
    QEventLoop loop;
    const Running running(*this, loop);
    QNetworkAccessManager manager;
    Load load(manager, request, m_limits, loop);
    if (load.isRunning())
        loop.exec();
    return load.response();
}

void LinuxUrlLoader::cancelAll()
{
    const std::lock_guard lock(m_mutex);
    m_cancelled = true;
    for (QEventLoop *loop : m_loops)
        QMetaObject::invokeMethod(loop, &QEventLoop::quit, Qt::QueuedConnection);
}

} // namespace platform

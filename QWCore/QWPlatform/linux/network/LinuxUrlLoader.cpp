#include "LinuxUrlLoader.h"

#include "NetworkRequests.h"
#include "UrlExchange.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QThread>

#include <algorithm>
#include <thread>

namespace platform
{

namespace
{
constexpr qint64 largestPiece = 256 * 1024;

UrlResponse refusal(const char *reason)
{
    return {.status = 0, .body = {}, .error = translated(reason)};
}

/// One answer that is read into memory until it ends or breaks its limit.
class Load
{
public:
    Load(const UrlRequest &request, std::chrono::milliseconds inactivity, QEventLoop &loop)
        : m_largestBody(request.largestBody)
        , m_loop(loop)
        , m_exchange(request, inactivity)
    {
        if (request.method != "HEAD") // which tells a length and brings nothing
            QObject::connect(&m_exchange, &UrlExchange::responded, &loop, [this] { _checkLength(); });
        QObject::connect(&m_exchange, &UrlExchange::readyRead, &loop, [this] { _read(); });
        QObject::connect(&m_exchange, &UrlExchange::finished, &loop, [this] { _finish(); });
        m_exchange.start();
    }

    /// What came, once the loop has ended.
    UrlResponse response()
    {
        if (!m_hasEnded)
            m_response.error = translated("The request was cancelled.");
        return m_response;
    }

private:
    void _checkLength()
    {
        if (m_exchange.expectedLength() > m_largestBody)
            _end(translated("The answer is too large."));
    }

    void _read()
    {
        for (QByteArray piece = _piece(); !piece.isEmpty(); piece = _piece())
            _append(piece);
        if (m_response.body.size() > m_largestBody)
            _end(translated("The answer is too large."));
    }

    /// Unlike an append, a resize has the system move the pages of a large body, and never holds it twice.
    void _append(const QByteArray &piece)
    {
        const qsizetype size = m_response.body.size();
        m_response.body.resize(size + piece.size());
        std::copy(piece.begin(), piece.end(), m_response.body.begin() + size);
    }

    /// Small, whatever may come; one byte more than that shows that too much did.
    QByteArray _piece() { return m_exchange.read(std::min(largestPiece, m_largestBody + 1 - m_response.body.size())); }

    void _finish()
    {
        _read();
        m_response.status = m_exchange.status();
        if (!m_hasEnded)
            _end(m_exchange.failure());
    }

    void _end(const QString &error)
    {
        m_hasEnded = true;
        m_response.error = error;
        m_loop.quit();
    }

    const qint64 m_largestBody;
    QEventLoop &m_loop;
    UrlResponse m_response;
    bool m_hasEnded = false;
    UrlExchange m_exchange;
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
        m_mayLoad = !m_loader.m_cancelled;
        m_loader.m_loops.push_back(&m_loop);
    }

    ~Running()
    {
        const std::lock_guard lock(m_loader.m_mutex);
        std::erase(m_loader.m_loops, &m_loop);
        m_loader.m_ended.notify_all();
    }

    bool mayLoad() const { return m_mayLoad; }

private:
    LinuxUrlLoader &m_loader;
    QEventLoop &m_loop;
    bool m_mayLoad;
};

LinuxUrlLoader::LinuxUrlLoader()
    : LinuxUrlLoader(std::chrono::seconds(30))
{
}

LinuxUrlLoader::LinuxUrlLoader(std::chrono::milliseconds inactivity)
    : m_inactivity(inactivity)
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
        return refusal("The address cannot be loaded.");
    QEventLoop loop;
    const Running running(*this, loop);
    if (!running.mayLoad())
        return refusal("The request was cancelled.");
    Load load(request, m_inactivity, loop);
    loop.exec();
    return load.response();
}

void LinuxUrlLoader::cancelAll()
{
    std::unique_lock lock(m_mutex);
    m_cancelled = true;
    for (QEventLoop *loop : m_loops)
        QMetaObject::invokeMethod(loop, &QEventLoop::quit, Qt::QueuedConnection);
    m_ended.wait(lock, [this] { return m_loops.empty(); });
}

} // namespace platform

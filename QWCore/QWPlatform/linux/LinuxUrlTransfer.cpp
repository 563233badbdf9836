#include "LinuxUrlTransfer.h"

#include "../foundation/Localization.h"
#include "../network/UrlLoader.h"
#include "NetworkRequests.h"

#include <QDir>
#include <QFileInfo>
#include <QNetworkAccessManager>
#include <QNetworkReply>

#include <utility>

namespace platform
{

namespace
{
constexpr int firstStatusWithoutFile = 300; ///< Redirections are followed; one that is left leads nowhere.
}

LinuxUrlTransfer::LinuxUrlTransfer(const QString &destination, std::chrono::milliseconds inactivity,
                                   UrlDownloadObserver &observer)
    : m_file(destination)
    , m_observer(&observer)
    , m_inactivity(inactivity)
{
    m_idle.setSingleShot(true);
    connect(&m_idle, &QTimer::timeout, this, [this] { _fail(localized("The request timed out.")); });
}

LinuxUrlTransfer::~LinuxUrlTransfer()
{
    cancel();
}

void LinuxUrlTransfer::start(QNetworkAccessManager &network, const QUrl &url)
{
    QDir().mkpath(QFileInfo(m_file.fileName()).path());
    if (!m_file.open(QIODevice::WriteOnly))
        return failLater(m_file.errorString());
    m_reply = network.get(networkRequest({.url = url, .method = "GET", .headers = {}, .body = {}}));
    connect(m_reply, &QNetworkReply::metaDataChanged, this, &LinuxUrlTransfer::_metaDataChanged, Qt::QueuedConnection);
    connect(m_reply, &QNetworkReply::readyRead, this, &LinuxUrlTransfer::_readyRead, Qt::QueuedConnection);
    connect(m_reply, &QNetworkReply::finished, this, &LinuxUrlTransfer::_finished, Qt::QueuedConnection);
    if (m_reply->isFinished())
        QMetaObject::invokeMethod(this, &LinuxUrlTransfer::_finished, Qt::QueuedConnection);
    m_idle.start(m_inactivity);
}

void LinuxUrlTransfer::failLater(const QString &description)
{
    QMetaObject::invokeMethod(
        this, [this, description] { _fail(description); }, Qt::QueuedConnection);
}

void LinuxUrlTransfer::cancel()
{
    _end();
}

void LinuxUrlTransfer::_metaDataChanged()
{
    if (!m_observer)
        return;
    m_idle.start(m_inactivity);
    const int status = statusOf(*m_reply);
    if (status >= 200 && status < firstStatusWithoutFile)
        _respond();
}

void LinuxUrlTransfer::_respond()
{
    if (std::exchange(m_responded, true))
        return;
    m_observer->downloadDidReceiveResponse(expectedLength(*m_reply));
}

void LinuxUrlTransfer::_readyRead()
{
    if (!m_observer || statusOf(*m_reply) >= firstStatusWithoutFile)
        return;
    m_idle.start(m_inactivity);
    const QByteArray data = m_reply->readAll();
    if (data.isEmpty())
        return;
    _respond();
    if (m_observer && _store(data))
        m_observer->downloadDidReceiveDataOfLength(data.size());
}

bool LinuxUrlTransfer::_store(const QByteArray &data)
{
    if (m_file.write(data) != data.size() || !m_file.flush()) {
        _fail(m_file.errorString());
        return false;
    }
    m_received += data.size();
    return true;
}

void LinuxUrlTransfer::_finished()
{
    _readyRead();
    if (!m_observer)
        return;
    const QString failure = _failure();
    if (!failure.isEmpty())
        return _fail(failure);
    _respond();
    if (m_observer)
        _complete();
}

QString LinuxUrlTransfer::_failure() const
{
    if (failedOnTheWay(*m_reply))
        return m_reply->errorString();
    const int status = statusOf(*m_reply);
    if (status >= firstStatusWithoutFile)
        return formatted(localized("The server answered with status %d."), {QString::number(status)});
    if (m_received < expectedLength(*m_reply))
        return localized("The connection was lost before the whole file arrived.");
    return {};
}

void LinuxUrlTransfer::_complete()
{
    if (!m_file.commit())
        return _fail(m_file.errorString());
    if (UrlDownloadObserver *observer = _end())
        observer->downloadDidFinish();
}

void LinuxUrlTransfer::_fail(const QString &description)
{
    if (UrlDownloadObserver *observer = _end())
        observer->downloadDidFailWithError(description);
}

UrlDownloadObserver *LinuxUrlTransfer::_end()
{
    m_idle.stop();
    if (m_file.isOpen()) {
        m_file.cancelWriting();
        m_file.commit(); // closes and removes what was written
    }
    if (QNetworkReply *reply = std::exchange(m_reply, nullptr)) {
        reply->disconnect(this);
        reply->abort();
        reply->deleteLater();
    }
    if (m_observer)
        deleteLater();
    return std::exchange(m_observer, nullptr);
}

} // namespace platform

#include "LinuxUrlTransfer.h"

#include "QWPlatform/foundation/Localization.h"
#include "QWPlatform/linux/process/WholeWrite.h"

#include <QDir>
#include <QFileInfo>

#include <utility>

namespace platform
{

namespace
{
constexpr int firstStatusWithoutFile = 300; ///< Redirections are followed; one that is left leads nowhere.
constexpr qint64 pieceSize = 256 * 1024;
} // namespace

LinuxUrlTransfer::LinuxUrlTransfer(const QString &destination, const LinuxUrlDownloads::Limits &limits,
                                   UrlDownloadObserver &observer)
    : m_file(destination)
    , m_observer(&observer)
    , m_limits(limits)
{
}

LinuxUrlTransfer::~LinuxUrlTransfer()
{
    cancel();
}

void LinuxUrlTransfer::start(const QUrl &url)
{
    QDir().mkpath(QFileInfo(m_file.fileName()).path());
    if (!m_file.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        return failLater(m_file.errorString());
    m_exchange = new UrlExchange({.url = url, .method = "GET", .headers = {}, .body = {}}, m_limits.inactivity);
    m_exchange->setParent(this);
    connect(m_exchange, &UrlExchange::responded, this, &LinuxUrlTransfer::_responded);
    connect(m_exchange, &UrlExchange::readyRead, this, &LinuxUrlTransfer::_readyRead);
    connect(m_exchange, &UrlExchange::finished, this, &LinuxUrlTransfer::_finished);
    m_exchange->start();
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

bool LinuxUrlTransfer::_bringsFile() const
{
    return m_observer && m_exchange->status() >= 200 && m_exchange->status() < firstStatusWithoutFile;
}

void LinuxUrlTransfer::_responded()
{
    if (!_bringsFile())
        return;
    if (m_exchange->expectedLength() > m_limits.fileSize)
        _fail(localized("The file is too large."));
    else
        _respond();
}

void LinuxUrlTransfer::_respond()
{
    if (!std::exchange(m_responded, true))
        m_observer->downloadDidReceiveResponse(m_exchange->expectedLength());
}

void LinuxUrlTransfer::_readyRead()
{
    while (m_observer) {
        const QByteArray data = m_exchange->read(pieceSize);
        if (data.isEmpty())
            return;
        m_received += data.size();
        if (m_received > m_limits.fileSize)
            return _fail(localized("The file is too large."));
        if (_bringsFile()) // not so the page that goes with an error
            _take(data);
    }
}

void LinuxUrlTransfer::_take(const QByteArray &data)
{
    _respond();
    if (!m_observer)
        return;
    if (const QString reason = writeWhole(m_file, data); !reason.isEmpty())
        return _fail(reason);
    m_observer->downloadDidReceiveDataOfLength(data.size());
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
    const QString failure = m_exchange->failure();
    const int status = m_exchange->status();
    if (failure.isEmpty() && status >= firstStatusWithoutFile)
        return formatted(localized("The server answered with status %d."), {QString::number(status)});
    return failure;
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
    if (m_file.isOpen()) {
        m_file.cancelWriting();
        m_file.commit(); // closes and removes what was written
    }
    if (m_exchange)
        m_exchange->disconnect(this);
    if (m_observer)
        deleteLater();
    return std::exchange(m_observer, nullptr);
}

} // namespace platform

#include "FileTransfer.h"

#include "DownloadReport.h"

#include <QFileInfo>

#include <algorithm>
#include <fcntl.h>
#include <utility>

namespace platform
{

namespace
{
using EventKind = DownloadEvent::Kind;

constexpr int firstStatusWithoutFile = 300; ///< Redirections are followed; one that is left leads nowhere.
constexpr qint64 readAtOnce = 256 * 1024;
constexpr qint64 writtenAtOnce = 8 * 1024 * 1024; ///< The disk begins with so much while more arrives.
constexpr auto timeBetweenProgress = std::chrono::milliseconds(40);
} // namespace

FileTransfer::FileTransfer(const UrlDownloadRequest &request, const LinuxUrlDownloads::Limits &limits,
                           std::shared_ptr<DownloadReport> report)
    : m_request(request)
    , m_limits(limits)
    , m_inactivity(limits.inactivity)
    , m_report(std::move(report))
    , m_file(std::in_place, request.destination, request.overwrite)
    , m_partial(request.url, limits.patience)
{
    m_pause.setSingleShot(true);
    m_quiet.setSingleShot(true);
    connect(&m_pause, &QTimer::timeout, this, &FileTransfer::_ask);
    connect(&m_quiet, &QTimer::timeout, this, &FileTransfer::_tellProgress);
    connect(&m_sync, &FileSync::ended, this, &FileTransfer::_synced);
    connect(m_report.get(), &DownloadReport::accepted, this, &FileTransfer::_place);
}

void FileTransfer::start()
{
    if (const std::error_code error = m_file->open())
        return _failForFile(error);
    _ask();
}

void FileTransfer::_ask()
{
    m_hasAnswer = false;
    m_exchange = std::make_unique<UrlExchange>(m_partial.request(), m_inactivity);
    connect(m_exchange.get(), &UrlExchange::responded, this, &FileTransfer::_responded);
    connect(m_exchange.get(), &UrlExchange::readyRead, this, &FileTransfer::_readyRead);
    connect(m_exchange.get(), &UrlExchange::finished, this, &FileTransfer::_finished);
    m_exchange->start();
}

bool FileTransfer::_bringsFile() const
{
    return m_exchange && m_exchange->status() >= 200 && m_exchange->status() < firstStatusWithoutFile;
}

void FileTransfer::_responded()
{
    if (_bringsFile() && !std::exchange(m_hasAnswer, true))
        _takeAnswer();
}

void FileTransfer::_takeAnswer()
{
    const bool isEmpty = m_hasBegun && m_partial.received() == 0;
    const qint64 lengthBefore = m_partial.length();
    const PartialFile::Fit fit = m_partial.take(*m_exchange);
    if (fit == PartialFile::Fit::None)
        return _fail("The server answered with status %d.", QString::number(m_exchange->status()));
    if (m_partial.length() > m_limits.fileSize)
        return _fail("The file is too large.");
    if (fit == PartialFile::Fit::Continues || (isEmpty && m_partial.length() == lengthBefore))
        return; // nobody has heard anything else
    if (const std::error_code error = m_file->clear())
        return _failForFile(error);
    m_kickedOff = 0;
    m_untold = 0;
    m_hasBegun = true;
    m_report->tell({EventKind::Response, m_partial.length(), {}, {}});
}

void FileTransfer::_readyRead()
{
    while (m_exchange) {
        const QByteArray data = m_exchange->read(readAtOnce);
        if (data.isEmpty())
            return;
        _take(data);
    }
}

void FileTransfer::_take(const QByteArray &data)
{
    _responded();
    if (_bringsFile()) // not so the page that goes with an error
        _keep(data);
}

void FileTransfer::_keep(const QByteArray &data)
{
    m_partial.add(data.size());
    if (m_partial.received() > m_limits.fileSize)
        return _fail("The file is too large.");
    if (m_partial.isTooLong())
        return _fail("The server sent more than it had announced.");
    if (const std::error_code error = m_file->write(data))
        return _failForFile(error);
    if (m_partial.received() - m_kickedOff >= writtenAtOnce) {
        ::sync_file_range(m_file->descriptor(), m_kickedOff, m_partial.received() - m_kickedOff, SYNC_FILE_RANGE_WRITE);
        m_kickedOff = m_partial.received();
    }
    m_untold += data.size();
    if (!m_quiet.isActive())
        _tellProgress();
}

void FileTransfer::_tellProgress()
{
    if (m_untold > 0) {
        m_report->tell({EventKind::Data, std::exchange(m_untold, 0), {}, {}});
        m_quiet.start(timeBetweenProgress);
    }
}

void FileTransfer::_finished()
{
    _readyRead();
    if (!m_exchange)
        return;
    _responded();
    if (!m_exchange)
        return;
    const QString failure = m_exchange->failure();
    if (_isWhole(failure.isEmpty()))
        m_sync.start(m_file->descriptor());
    else if (m_exchange->hasTimedOut())
        _fellSilent(failure);
    else if (failure.isEmpty() && m_exchange->status() >= firstStatusWithoutFile)
        _fail("The server answered with status %d.", QString::number(m_exchange->status()));
    else
        _lost(failure.isEmpty() ? "The connection was lost before the whole answer arrived." : failure);
}

/// @p hasEnded: the answer came to its own end. One whose length is told may break after its last byte.
bool FileTransfer::_isWhole(bool hasEnded) const
{
    if (_bringsFile())
        return m_partial.isWhole() && (hasEnded || m_partial.length() >= 0);
    return hasEnded && m_partial.isWholeAfter(*m_exchange);
}

void FileTransfer::_lost(const QString &reason)
{
    _askAgainAfter(m_hasBegun ? m_partial.pauseBeforeNextTry() : std::nullopt, reason);
}

/// As a machine does that has left the wireless network. The user has waited already.
void FileTransfer::_fellSilent(const QString &reason)
{
    m_inactivity = std::min(m_limits.inactivity, m_limits.inactivityAfterSilence);
    _askAgainAfter(m_hasBegun ? m_partial.pauseAfterSilence() : std::nullopt, reason);
}

void FileTransfer::_askAgainAfter(std::optional<std::chrono::milliseconds> pause, const QString &reason)
{
    if (!pause)
        return _fail(reason);
    m_exchange.reset();
    m_pause.start(*pause);
}

void FileTransfer::_synced(const std::error_code &error)
{
    if (error)
        return _failForFile(error);
    _tellProgress();
    m_report->tell({EventKind::Whole, 0, {}, {}});
}

void FileTransfer::_place()
{
    if (m_report->isCancelled())
        return _end();
    if (const std::error_code error = m_file->place())
        return _failForFile(error);
    if (m_file->path() != m_request.destination)
        m_report->tell({EventKind::Destination, 0, m_file->path(), {}});
    m_report->tell({EventKind::Finish, 0, {}, {}});
    _end();
}

void FileTransfer::_failForFile(const std::error_code &error)
{
    m_file.reset();
    m_report->tell({EventKind::Failure, 0, {}, {{}, QFileInfo(m_request.destination).path(), error.value()}});
    _end();
}

void FileTransfer::_fail(const QString &text, const QString &argument)
{
    m_file.reset();
    m_report->tell({EventKind::Failure, 0, {}, {text, argument, 0}});
    _end();
}

void FileTransfer::_end()
{
    m_exchange.reset();
    m_quiet.stop();
    Q_EMIT ended();
}

} // namespace platform

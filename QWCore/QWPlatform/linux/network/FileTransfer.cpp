#include "FileTransfer.h"

#include "DownloadReport.h"

#include <QFileInfo>

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
                           DownloadReport &report)
    : m_request(request)
    , m_limits(limits)
    , m_report(report)
    , m_file(std::in_place, request.destination, request.overwrite)
    , m_partial(request.url, limits.patience)
{
    m_pause.setSingleShot(true);
    m_quiet.setSingleShot(true);
    connect(&m_pause, &QTimer::timeout, this, &FileTransfer::_ask);
    connect(&m_quiet, &QTimer::timeout, this, &FileTransfer::_tellProgress);
    connect(&m_sync, &FileSync::ended, this, &FileTransfer::_synced);
    connect(&m_report, &DownloadReport::accepted, this, &FileTransfer::_place);
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
    m_fit = PartialFile::Fit::None;
    m_exchange = std::make_unique<UrlExchange>(m_partial.request(), m_limits.inactivity);
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
    m_fit = m_partial.take(*m_exchange);
    if (m_fit == PartialFile::Fit::None)
        return _fail("The server answered with status %d.", QString::number(m_exchange->status()));
    if (m_partial.length() > m_limits.fileSize)
        return _fail("The file is too large.");
    if (m_fit == PartialFile::Fit::Continues || (isEmpty && m_partial.length() == lengthBefore))
        return; // nobody has heard anything else
    if (const std::error_code error = m_file->clear())
        return _failForFile(error);
    m_kickedOff = 0;
    m_untold = 0;
    m_hasBegun = true;
    m_report.tell({EventKind::Response, m_partial.length(), {}, {}});
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
        m_report.tell({EventKind::Data, std::exchange(m_untold, 0), {}, {}});
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
    const bool isWhole = _bringsFile() && (m_partial.isWhole() || (failure.isEmpty() && m_partial.length() < 0));
    if (isWhole)
        m_sync.start(m_file->descriptor());
    else if (m_exchange->hasTimedOut())
        _fail(failure);
    else if (failure.isEmpty() && m_exchange->status() >= firstStatusWithoutFile)
        _fail("The server answered with status %d.", QString::number(m_exchange->status()));
    else
        _lost(failure.isEmpty() ? "The connection was lost before the whole answer arrived." : failure);
}

void FileTransfer::_lost(const QString &reason)
{
    const auto pause = m_hasBegun ? m_partial.pauseBeforeNextTry() : std::nullopt;
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
    m_report.tell({EventKind::Whole, 0, {}, {}});
}

void FileTransfer::_place()
{
    std::error_code error;
    bool isWanted = false;
    m_report.whileWanted([&] {
        isWanted = true;
        error = m_file->place();
    });
    if (!isWanted)
        return _end();
    if (error)
        return _failForFile(error);
    if (m_file->path() != m_request.destination)
        m_report.tell({EventKind::Destination, 0, m_file->path(), {}});
    m_report.tell({EventKind::Finish, 0, {}, {}});
    _end();
}

void FileTransfer::_failForFile(const std::error_code &error)
{
    m_file.reset();
    m_report.tell({EventKind::Failure, 0, {}, {{}, QFileInfo(m_request.destination).path(), error.value()}});
    _end();
}

void FileTransfer::_fail(const QString &text, const QString &argument)
{
    m_file.reset();
    m_report.tell({EventKind::Failure, 0, {}, {text, argument, 0}});
    _end();
}

void FileTransfer::_end()
{
    m_exchange.reset();
    m_quiet.stop();
    Q_EMIT ended();
}

} // namespace platform

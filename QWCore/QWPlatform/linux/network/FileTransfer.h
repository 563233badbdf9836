#pragma once

#include "DownloadFile.h"
#include "FileSync.h"
#include "LinuxUrlDownloads.h"
#include "PartialFile.h"
#include "UrlExchange.h"

#include <QObject>
#include <QTimer>

#include <chrono>
#include <memory>
#include <optional>

namespace platform
{

class DownloadReport;

/// A download at work, in the event loop of its own thread: from the server into the file, no more than a small part of
/// it in memory. Destroying it ends it and removes what was written.
class FileTransfer : public QObject
{
    Q_OBJECT

public:
    /// @p report is told, as an observer is to hear it.
    FileTransfer(const UrlDownloadRequest &request, const LinuxUrlDownloads::Limits &limits,
                 std::shared_ptr<DownloadReport> report);

    void start();

Q_SIGNALS:
    void ended(); ///< The report has been told how. Once.

private:
    void _ask();
    void _responded();
    void _takeAnswer();
    void _readyRead();
    void _take(const QByteArray &data);
    void _keep(const QByteArray &data);
    void _finished();
    bool _bringsFile() const;
    bool _isWhole(bool hasEnded) const;
    void _lost(const QString &reason);
    void _fellSilent(const QString &reason);
    void _askAgainAfter(std::optional<std::chrono::milliseconds> pause, const QString &reason);
    void _synced(const std::error_code &error);
    void _place();
    void _tellProgress();
    void _failForFile(const std::error_code &error);
    void _fail(const QString &text, const QString &argument = {});
    void _end();

    const UrlDownloadRequest m_request;
    const LinuxUrlDownloads::Limits m_limits;
    std::chrono::milliseconds m_inactivity;
    const std::shared_ptr<DownloadReport> m_report;
    std::optional<DownloadFile> m_file; ///< None after a failure.
    PartialFile m_partial;
    std::unique_ptr<UrlExchange> m_exchange; ///< Null between two, and after the end.
    bool m_hasAnswer = false;                ///< Of this exchange.
    bool m_hasBegun = false;                 ///< Of any: a file was announced, and the report told.
    qint64 m_kickedOff = 0;                  ///< Bytes that the disk was told to write.
    qint64 m_untold = 0;                     ///< Bytes that the report has not been told of.
    QTimer m_pause;                          ///< Before the next exchange.
    QTimer m_quiet;                          ///< Before progress is told again.
    FileSync m_sync;
};

} // namespace platform

#pragma once

#include "LinuxUrlDownloads.h"
#include "UrlExchange.h"

#include <QObject>
#include <QSaveFile>

namespace platform
{

/// One download to a file. Deletes itself from the event loop after its end, so that its observer may let go of it at
/// any time.
class LinuxUrlTransfer : public QObject
{
public:
    LinuxUrlTransfer(const QString &destination, const LinuxUrlDownloads::Limits &limits,
                     UrlDownloadObserver &observer);
    ~LinuxUrlTransfer() override;

    void start(const QUrl &url);

    /// Fails from the event loop.
    void failLater(const QString &description);

    void cancel();

private:
    bool _bringsFile() const;
    void _responded();
    void _respond();
    void _readyRead();
    void _take(const QByteArray &data);
    void _finished();
    QString _failure() const; ///< Why the ended exchange is no success; "" when it is one.
    void _complete();
    void _fail(const QString &description);
    UrlDownloadObserver *_end(); ///< Lets go of everything; the observer, for its last call, or null.

    QSaveFile m_file;
    UrlDownloadObserver *m_observer; ///< Null once it has heard the last call or the download was cancelled.
    const LinuxUrlDownloads::Limits m_limits;
    UrlExchange *m_exchange = nullptr; ///< A child; null before the start.
    qint64 m_received = 0;
    bool m_responded = false;
};

} // namespace platform

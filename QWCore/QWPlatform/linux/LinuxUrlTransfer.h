#pragma once

#include "../network/UrlDownload.h"

#include <QObject>
#include <QPointer>
#include <QSaveFile>
#include <QTimer>

#include <chrono>

class QNetworkAccessManager;
class QNetworkReply;

namespace platform
{

/// One download to a file. Deletes itself from the event loop after its end, so that its observer may let go of it at
/// any time.
class LinuxUrlTransfer : public QObject
{
public:
    LinuxUrlTransfer(const QString &destination, std::chrono::milliseconds inactivity, UrlDownloadObserver &observer);
    ~LinuxUrlTransfer() override;

    void start(QNetworkAccessManager &network, const QUrl &url);

    /// Fails from the event loop.
    void failLater(const QString &description);

    void cancel();

private:
    void _metaDataChanged();
    void _readyRead();
    void _finished();
    void _respond();
    bool _store(const QByteArray &data);
    QString _failure() const; ///< Why the ended reply is no success; "" when it is one.
    void _complete();
    void _fail(const QString &description);
    UrlDownloadObserver *_end(); ///< Lets go of everything; the observer, for its last call, or null.

    QSaveFile m_file;
    UrlDownloadObserver *m_observer; ///< Null once it has heard the last call or the download was cancelled.
    QPointer<QNetworkReply> m_reply;
    QTimer m_idle;
    const std::chrono::milliseconds m_inactivity;
    qint64 m_received = 0;
    bool m_responded = false;
};

} // namespace platform

#pragma once

#include "QWPlatform/network/UrlLoader.h"
#include "ServerLookup.h"

#include <QNetworkAccessManager>
#include <QObject>
#include <QTimer>

#include <chrono>
#include <memory>

class QNetworkReply;

namespace platform
{

/// One request and its answer, in the event loop of the thread that makes it, with a network stack of its own. Every
/// signal comes from that loop. Destroying it ends the exchange at once, whatever the server does.
class UrlExchange : public QObject
{
    Q_OBJECT

public:
    /// Fails after @p inactivity without a byte in either direction.
    UrlExchange(UrlRequest request, std::chrono::milliseconds inactivity);
    ~UrlExchange() override;

    void start();

    /// HTTP status; 200 for a file that was read, 0 before an answer came.
    int status() const;

    /// Of the answer, as sent; "" when it has no such header.
    QByteArray header(const char *name) const;

    /// Of what is asked for: the last one, where the answer led elsewhere.
    const QUrl &url() const { return m_request.url; }

    /// Whether it failed because nothing came for too long.
    bool hasTimedOut() const { return m_hasTimedOut; }

    /// Length of the body in bytes as announced; -1 when it is not.
    qint64 expectedLength() const;

    /// Up to @p most bytes of what has come; never more than a small part of a large answer waits here.
    QByteArray read(qint64 most);

    /// Why the exchange itself broke, once all that came was read; "" when an answer came whole, whatever its status.
    QString failure() const;

Q_SIGNALS:
    void responded(); ///< Status and length of the answer are known.
    void readyRead(); ///< Read all of it, else no more comes.
    void finished();  ///< Once, with an answer or a failure; what is left can still be read.

private:
    void _sendToFile();
    void _send(const QNetworkProxy &proxy);
    void _connectReply();
    void _respond();
    void _follow(const QUrl &url);
    bool _bringsBody() const;
    void _restartClock() { m_idle.start(m_inactivity); }
    void _timeOut();
    void _fail(const QString &description);
    void _finish();

    struct DeleteReply
    {
        void operator()(QNetworkReply *reply) const;
    };

    UrlRequest m_request; ///< The last one: redirections change it.
    const std::chrono::milliseconds m_inactivity;
    QTimer m_idle;
    ServerLookup m_lookup;
    QNetworkAccessManager m_network;
    std::unique_ptr<QNetworkReply, DeleteReply> m_reply; ///< Null while the server is looked for.
    QString m_failure;
    qint64 m_received = 0;
    int m_redirections = 0;
    bool m_hasTimedOut = false;
    bool m_hasFinished = false;
};

} // namespace platform

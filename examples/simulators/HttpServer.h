#pragma once

#include <QHash>
#include <QObject>
#include <QUrl>
#include <QUrlQuery>

#include <chrono>
#include <functional>
#include <vector>

class QTcpServer;
class QTcpSocket;

struct HttpRequest
{
    QByteArray method;
    QString path; ///< Decoded, without the query.
    QUrlQuery query;
    QHash<QByteArray, QByteArray> headers; ///< Names in lower case.
    QByteArray body;
};

/// What the server answers, and how badly.
struct HttpReply
{
    int status = 200;
    QByteArray contentType = "text/html; charset=utf-8";
    QByteArray body;
    std::vector<std::pair<QByteArray, QByteArray>> headers; ///< Further ones.

    bool sendLength = true;                 ///< False: the end of the connection is the end of the body.
    qsizetype cutAfter = -1;                ///< The connection is closed after so many bytes of the body; -1: never.
    qsizetype pieceSize = 0;                ///< The body drips in pieces of so many bytes; 0: at once.
    std::chrono::milliseconds pieceDelay{}; ///< Between two pieces.
    bool stayAfterPieces = false;           ///< Falls silent after cutAfter bytes instead of closing.
    bool neverAnswer = false;               ///< Takes the request and says nothing.
    QByteArray raw;                         ///< Sent as it stands instead of all above, when not empty.

    static HttpReply text(const QByteArray &body, const QByteArray &contentType = "text/html; charset=utf-8");
    static HttpReply failure(int status);
    static HttpReply redirection(const QByteArray &location, int status = 302);
    static HttpReply file(const QString &path); ///< The file's bytes, or 404.
};

/// A small HTTP/1.1 server on the loopback interface, one request a connection, whose answers may be as bad as real
/// ones. Lives in the event loop of its thread.
class HttpServer : public QObject
{
    Q_OBJECT

public:
    using Handler = std::function<HttpReply(const HttpRequest &request)>;

    explicit HttpServer(Handler handler = {}, QObject *parent = nullptr);
    ~HttpServer() override;

    /// Listens on 127.0.0.1; port 0 takes a free one.
    bool listen(quint16 port = 0);

    /// "http://127.0.0.1:<port>", without a trailing slash.
    QString address() const;

    QUrl url(const QString &pathAndQuery) const { return QUrl(address() + pathAndQuery); }

    /// Answers requests for @p path (decoded, without the query) with @p reply, ahead of the handler.
    void answer(const QString &path, const HttpReply &reply);

    /// What was asked so far, in order.
    const std::vector<HttpRequest> &requests() const { return m_requests; }

    /// How many connections were made so far, whether anything was asked over them or not.
    int connections() const { return m_connections; }

Q_SIGNALS:
    void requestReceived(const QString &path);

private:
    HttpReply _replyTo(const HttpRequest &request) const;

    Handler m_handler;
    QTcpServer *m_server;
    QHash<QString, HttpReply> m_answers;
    std::vector<HttpRequest> m_requests;
    int m_connections = 0;
};

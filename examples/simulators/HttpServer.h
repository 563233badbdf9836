#pragma once

#include "HttpBody.h"

#include <QHash>
#include <QHostAddress>
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
    QByteArray line;   ///< The first line as it came, without its end.
    QByteArray target; ///< Between method and version, as it came: nothing is decoded.
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
    HttpBody body;
    std::vector<std::pair<QByteArray, QByteArray>> headers; ///< Further ones.
    QByteArray etag;           ///< With its quotes; sent, and what "If-Range" is compared with.
    bool offersRanges = false; ///< Single parts of a 200 of known size can be asked for (206, 416).

    bool sendLength = true;                 ///< False: the end of the connection is the end of the body.
    qint64 toldLength = -1;                 ///< Told instead of the true one; -1: the true one.
    qint64 cutAfter = -1;                   ///< The connection is closed after so many bytes of the body; -1: never.
    qint64 pieceSize = 0;                   ///< The body drips in pieces of so many bytes; 0: as the socket takes it.
    std::chrono::milliseconds pieceDelay{}; ///< Between two pieces.
    std::chrono::milliseconds delay{};      ///< Before the first byte.
    bool stayAfterPieces = false;           ///< Falls silent after cutAfter bytes instead of closing.
    bool neverAnswer = false;               ///< Takes the request and says nothing.
    QByteArray raw;                         ///< Sent as it stands instead of all above, when not empty.

    /// Called on the server's thread once the last byte that will be sent has been handed to the system.
    std::function<void()> sent;

    using Answer = std::function<void(const HttpReply &)>;

    /// When set, the only thing that counts: called once with the function that takes the reply, on the server's
    /// thread, at any later time or never.
    std::function<void(const Answer &)> later;

    static HttpReply text(const QByteArray &body, const QByteArray &contentType = "text/html; charset=utf-8");
    static HttpReply failure(int status);
    static HttpReply redirection(const QByteArray &location, int status = 302);
    static HttpReply file(const QString &path); ///< The file, with ranges, or 404.
};

/// A small HTTP/1.1 server, one request a connection, whose answers may be as bad as real ones. Holds of each body only
/// what a socket is about to take. Lives in the event loop of its thread.
class HttpServer : public QObject
{
    Q_OBJECT

public:
    using Handler = std::function<HttpReply(const HttpRequest &request)>;

    explicit HttpServer(Handler handler = {}, QObject *parent = nullptr);
    ~HttpServer() override;

    /// Listens on 127.0.0.1; port 0 takes a free one.
    bool listen(quint16 port = 0);

    /// Listens on @p address, of IPv4.
    bool listen(const QHostAddress &address, quint16 port);

    /// Ends all connections at once, in whatever they are, and takes no more.
    void close();

    /// "http://127.0.0.1:<port>", without a trailing slash; of another address where it listens on that alone.
    QString address() const;
    quint16 port() const;

    QUrl url(const QString &pathAndQuery) const { return QUrl(address() + pathAndQuery); }

    /// Answers requests for @p path (decoded, without the query) with @p reply, ahead of the handler.
    void answer(const QString &path, const HttpReply &reply);

    /// What was asked so far, in order.
    const std::vector<HttpRequest> &requests() const { return m_requests; }

    /// How many connections were made so far, whether anything was asked over them or not.
    int connections() const { return m_connections; }

Q_SIGNALS:
    void requestReceived(const QString &path);
    void lineReceived(const QByteArray &line); ///< HttpRequest::line.

private:
    void _accept();
    HttpReply _reply(const HttpRequest &request);
    HttpReply _scriptedReply(const HttpRequest &request) const;

    Handler m_handler;
    QTcpServer *m_server;
    QHash<QString, HttpReply> m_answers;
    std::vector<HttpRequest> m_requests;
    int m_connections = 0;
};

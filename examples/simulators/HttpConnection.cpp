#include "HttpConnection.h"

#include <QTcpSocket>

#include <algorithm>
#include <optional>

namespace
{
constexpr qsizetype longestRequest = 16 * 1024 * 1024;

void parseRequestLine(const QByteArray &line, HttpRequest &request)
{
    const QList<QByteArray> words = line.trimmed().split(' ');
    const QUrl target("http://localhost" + QString::fromUtf8(words.value(1)));
    request.method = words.value(0);
    request.path = target.path(QUrl::FullyDecoded);
    request.query = QUrlQuery(target);
}

void parseHeader(const QByteArray &line, HttpRequest &request)
{
    const qsizetype colon = line.indexOf(':');
    if (colon > 0)
        request.headers.insert(line.left(colon).trimmed().toLower(), line.mid(colon + 1).trimmed());
}

/// The request in @p received, once it is whole.
std::optional<HttpRequest> parsed(const QByteArray &received)
{
    const qsizetype end = received.indexOf("\r\n\r\n");
    if (end < 0)
        return std::nullopt;
    HttpRequest request;
    QList<QByteArray> lines = received.left(end).split('\n');
    parseRequestLine(lines.takeFirst(), request);
    for (const QByteArray &line : std::as_const(lines))
        parseHeader(line, request);
    request.body = received.mid(end + 4);
    const bool whole = request.body.size() >= request.headers.value("content-length").toLongLong();
    return whole ? std::optional(request) : std::nullopt;
}
} // namespace

HttpConnection::HttpConnection(QTcpSocket &socket, HttpServer::Handler handler)
    : QObject(&socket)
    , m_socket(socket)
    , m_handler(std::move(handler))
{
    m_next.setSingleShot(true);
    connect(&m_next, &QTimer::timeout, this, &HttpConnection::_sendPiece);
    connect(&socket, &QTcpSocket::readyRead, this, &HttpConnection::_read);
    connect(&socket, &QTcpSocket::disconnected, &socket, &QObject::deleteLater);
    _read();
}

void HttpConnection::_read()
{
    m_received += m_socket.readAll();
    if (m_received.size() > longestRequest)
        return m_socket.abort();
    if (m_answered)
        return;
    const auto request = parsed(m_received);
    if (!request)
        return;
    m_answered = true;
    m_reply = m_handler(*request);
    if (!m_reply.neverAnswer)
        _send();
}

void HttpConnection::_send()
{
    if (!m_reply.raw.isEmpty()) {
        m_socket.write(m_reply.raw);
        return _close();
    }
    m_socket.write(_head());
    m_rest = m_reply.cutAfter < 0 ? m_reply.body : m_reply.body.left(m_reply.cutAfter);
    _sendPiece();
}

void HttpConnection::_sendPiece()
{
    const qsizetype size = m_reply.pieceSize > 0 ? std::min(m_reply.pieceSize, m_rest.size()) : m_rest.size();
    m_socket.write(m_rest.left(size));
    m_rest.remove(0, size);
    if (!m_rest.isEmpty())
        m_next.start(m_reply.pieceDelay);
    else if (!m_reply.stayAfterPieces)
        _close();
}

void HttpConnection::_close()
{
    m_socket.disconnectFromHost(); // once all is written
}

QByteArray HttpConnection::_head() const
{
    QByteArray head = "HTTP/1.1 " + QByteArray::number(m_reply.status) + " Answer\r\nConnection: close\r\n";
    head += "Content-Type: " + m_reply.contentType + "\r\n";
    if (m_reply.sendLength)
        head += "Content-Length: " + QByteArray::number(m_reply.body.size()) + "\r\n";
    for (const auto &[name, value] : m_reply.headers)
        head += name + ": " + value + "\r\n";
    return head + "\r\n";
}

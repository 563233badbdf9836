#include "HttpConnection.h"

#include <QPointer>
#include <QTcpSocket>

#include <algorithm>
#include <limits>
#include <optional>

namespace
{
constexpr qsizetype longestRequest = 16 * 1024 * 1024;
constexpr qint64 mostBuffered = 256 * 1024; ///< Written and not yet taken by the system.
constexpr qint64 endless = std::numeric_limits<qint64>::max();

void parseRequestLine(const QByteArray &line, HttpRequest &request)
{
    request.line = line.trimmed();
    const qsizetype first = request.line.indexOf(' ');
    const qsizetype last = request.line.lastIndexOf(' ');
    request.method = request.line.left(std::max<qsizetype>(first, 0));
    request.target = last > first ? request.line.mid(first + 1, last - first - 1) : QByteArray();
    const QUrl url("http://localhost" + QString::fromUtf8(request.target));
    request.path = url.path(QUrl::FullyDecoded);
    request.query = QUrlQuery(url);
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
    connect(&socket, &QTcpSocket::bytesWritten, this, &HttpConnection::_sendMore);
    connect(&socket, &QTcpSocket::disconnected, &socket, &QObject::deleteLater);
    _read();
}

void HttpConnection::_read()
{
    m_received += m_socket.readAll();
    if (m_received.size() > longestRequest)
        return m_socket.abort();
    if (m_answered)
        return m_received.clear();
    const auto request = parsed(m_received);
    if (!request)
        return;
    m_answered = true;
    m_received.clear();
    m_request = *request;
    _take(m_handler(m_request));
}

void HttpConnection::_take(const HttpReply &reply)
{
    m_reply = reply;
    if (m_reply.later) {
        const auto later = m_reply.later;
        return later([connection = QPointer(this)](const HttpReply &answer) {
            if (connection)
                connection->_take(answer);
        });
    }
    if (m_reply.neverAnswer)
        return;
    QTimer::singleShot(m_reply.delay, this, &HttpConnection::_send);
}

void HttpConnection::_send()
{
    if (m_socket.state() != QAbstractSocket::ConnectedState)
        return; // the client went meanwhile
    m_sending = true;
    if (!m_reply.raw.isEmpty())
        return _sendRaw();
    _chooseRange();
    m_socket.write(_head());
    _limitBody();
    if (!_hasMore())
        return _end();
    _sendPiece();
}

void HttpConnection::_sendRaw()
{
    m_reply.pieceSize = 0;
    m_reply.stayAfterPieces = false;
    m_socket.write(m_reply.raw);
    _end();
}

void HttpConnection::_chooseRange()
{
    const qint64 size = m_reply.body.size();
    m_range = {0, size == HttpBody::unknownSize ? endless : size};
    const QByteArray condition = m_request.headers.value("if-range");
    const bool isUnchanged = condition.isEmpty() || (!m_reply.etag.isEmpty() && condition == m_reply.etag);
    if (!m_reply.offersRanges || m_reply.status != 200 || size == HttpBody::unknownSize || !isUnchanged)
        return;
    if (const auto asked = HttpRange::requested(m_request.headers.value("range"), size)) {
        m_isPart = true;
        m_range = *asked;
        m_reply.status = m_range.isEmpty() ? 416 : 206;
    }
}

void HttpConnection::_limitBody()
{
    m_position = m_range.first;
    m_end = m_request.method == "HEAD" || m_range.isEmpty() ? m_position : m_range.end;
    if (m_reply.cutAfter >= 0)
        m_end = std::min(m_end, m_position + std::min(m_reply.cutAfter, endless - m_position));
}

/// The system took something.
void HttpConnection::_sendMore()
{
    if (!m_sending)
        return;
    if (_hasMore() && m_reply.pieceSize == 0)
        return _sendPiece();
    if (!_hasMore() && m_socket.bytesToWrite() == 0 && m_reply.sent)
        std::exchange(m_reply.sent, {})();
}

void HttpConnection::_sendPiece()
{
    if (m_reply.pieceSize == 0)
        _fill();
    else if (m_socket.bytesToWrite() < mostBuffered) // else whoever reads is slower still
        _writeUpTo(m_reply.pieceSize);
    if (!_hasMore())
        _end();
    else if (m_reply.pieceSize > 0)
        m_next.start(m_reply.pieceDelay);
}

/// A body may come in pieces smaller than what it was asked for.
void HttpConnection::_fill()
{
    while (_hasMore() && m_socket.bytesToWrite() < mostBuffered)
        _writeUpTo(mostBuffered - m_socket.bytesToWrite());
}

void HttpConnection::_writeUpTo(qint64 most)
{
    const QByteArray piece = m_reply.body.read(m_position, std::min(most, m_end - m_position));
    m_position += piece.size();
    if (piece.isEmpty())
        m_end = m_position;
    else
        m_socket.write(piece);
}

void HttpConnection::_end()
{
    if (!m_reply.stayAfterPieces)
        m_socket.disconnectFromHost(); // once all is written
}

QByteArray HttpConnection::_head() const
{
    QByteArray head = "HTTP/1.1 " + QByteArray::number(m_reply.status) + " Answer\r\nConnection: close\r\n";
    head += "Content-Type: " + m_reply.contentType + "\r\n";
    head += _lengthHeaders();
    if (!m_reply.etag.isEmpty())
        head += "ETag: " + m_reply.etag + "\r\n";
    for (const auto &[name, value] : m_reply.headers)
        head += name + ": " + value + "\r\n";
    return head + "\r\n";
}

QByteArray HttpConnection::_lengthHeaders() const
{
    const qint64 size = m_reply.body.size();
    const qint64 told = m_reply.toldLength >= 0 ? m_reply.toldLength
                        : m_isPart              ? std::max<qint64>(0, m_range.size())
                                                : size;
    QByteArray headers;
    if (m_reply.sendLength && told >= 0)
        headers += "Content-Length: " + QByteArray::number(told) + "\r\n";
    if (m_reply.offersRanges)
        headers += "Accept-Ranges: bytes\r\n";
    if (m_isPart)
        headers += "Content-Range: bytes " +
                   (m_range.isEmpty() ? QByteArray("*")
                                      : QByteArray::number(m_range.first) + '-' + QByteArray::number(m_range.end - 1)) +
                   '/' + QByteArray::number(size) + "\r\n";
    return headers;
}

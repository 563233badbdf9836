#include "HttpServer.h"

#include "HttpConnection.h"

#include <QDateTime>
#include <QFileInfo>
#include <QMimeDatabase>
#include <QTcpServer>
#include <QTcpSocket>

namespace
{
/// Thousands may knock at once.
constexpr int backlog = 4096;

QByteArray etagOf(const QFileInfo &file)
{
    return QString("\"%1-%2\"").arg(file.size(), 0, 16).arg(file.lastModified().toMSecsSinceEpoch(), 0, 16).toLatin1();
}
} // namespace

HttpReply HttpReply::text(const QByteArray &body, const QByteArray &contentType)
{
    HttpReply reply;
    reply.body = body;
    reply.contentType = contentType;
    return reply;
}

HttpReply HttpReply::failure(int status)
{
    HttpReply reply = text("<p>" + QByteArray::number(status) + "</p>");
    reply.status = status;
    return reply;
}

HttpReply HttpReply::redirection(const QByteArray &location, int status)
{
    HttpReply reply;
    reply.status = status;
    reply.headers.emplace_back("Location", location);
    return reply;
}

HttpReply HttpReply::file(const QString &path)
{
    HttpReply reply;
    reply.body = HttpBody::file(path);
    if (reply.body.isNull())
        return failure(404);
    reply.contentType = QMimeDatabase().mimeTypeForFile(path).name().toUtf8();
    reply.etag = etagOf(QFileInfo(path));
    reply.offersRanges = true;
    return reply;
}

HttpServer::HttpServer(Handler handler, QObject *parent)
    : QObject(parent)
    , m_handler(std::move(handler))
    , m_server(new QTcpServer(this))
{
    m_server->setListenBacklogSize(backlog);
    connect(m_server, &QTcpServer::newConnection, this, &HttpServer::_accept);
}

HttpServer::~HttpServer() = default;

bool HttpServer::listen(quint16 port)
{
    return listen(QHostAddress::LocalHost, port);
}

bool HttpServer::listen(const QHostAddress &address, quint16 port)
{
    return m_server->listen(address, port);
}

void HttpServer::close()
{
    m_server->close();
    for (QTcpSocket *const socket : m_server->findChildren<QTcpSocket *>())
        socket->abort();
}

QString HttpServer::address() const
{
    const QHostAddress own = m_server->serverAddress();
    const bool isOne = !own.isNull() && own != QHostAddress::Any && own != QHostAddress::AnyIPv4;
    return QString("http://%1:%2").arg(isOne ? own.toString() : "127.0.0.1").arg(port());
}

quint16 HttpServer::port() const
{
    return m_server->serverPort();
}

void HttpServer::answer(const QString &path, const HttpReply &reply)
{
    m_answers.insert(path, reply);
}

void HttpServer::_accept()
{
    while (QTcpSocket *const socket = m_server->nextPendingConnection()) {
        ++m_connections;
        new HttpConnection(*socket, [this](const HttpRequest &request) { return _reply(request); });
    }
}

HttpReply HttpServer::_reply(const HttpRequest &request)
{
    m_requests.push_back(request);
    Q_EMIT lineReceived(request.line);
    Q_EMIT requestReceived(request.path);
    return _scriptedReply(request);
}

HttpReply HttpServer::_scriptedReply(const HttpRequest &request) const
{
    const auto scripted = m_answers.constFind(request.path);
    if (scripted != m_answers.constEnd())
        return *scripted;
    return m_handler ? m_handler(request) : HttpReply::failure(404);
}

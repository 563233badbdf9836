#include "HttpServer.h"

#include "HttpConnection.h"

#include <QFile>
#include <QMimeDatabase>
#include <QTcpServer>
#include <QTcpSocket>

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
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return failure(404);
    return text(file.readAll(), QMimeDatabase().mimeTypeForFile(path).name().toUtf8());
}

HttpServer::HttpServer(Handler handler, QObject *parent)
    : QObject(parent)
    , m_handler(std::move(handler))
    , m_server(new QTcpServer(this))
{
    connect(m_server, &QTcpServer::newConnection, this, [this] {
        while (QTcpSocket *socket = m_server->nextPendingConnection()) {
            ++m_connections;
            new HttpConnection(*socket, [this](const HttpRequest &request) {
                m_requests.push_back(request);
                Q_EMIT requestReceived(request.path);
                return _replyTo(request);
            });
        }
    });
}

HttpServer::~HttpServer() = default;

bool HttpServer::listen(quint16 port)
{
    return m_server->listen(QHostAddress::LocalHost, port);
}

QString HttpServer::address() const
{
    return QString("http://127.0.0.1:%1").arg(m_server->serverPort());
}

void HttpServer::answer(const QString &path, const HttpReply &reply)
{
    m_answers.insert(path, reply);
}

HttpReply HttpServer::_replyTo(const HttpRequest &request) const
{
    const auto scripted = m_answers.constFind(request.path);
    if (scripted != m_answers.constEnd())
        return *scripted;
    return m_handler ? m_handler(request) : HttpReply::failure(404);
}

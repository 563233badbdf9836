#pragma once

#include "HttpRange.h"
#include "HttpServer.h"

#include <QTimer>

/// One connection: reads a request, sends the reply, closes. Goes with its socket.
class HttpConnection : public QObject
{
public:
    HttpConnection(QTcpSocket &socket, HttpServer::Handler handler);

private:
    void _read();
    void _take(const HttpReply &reply);
    void _send();
    void _sendRaw();
    void _chooseRange();
    void _limitBody();
    void _sendMore();
    void _sendPiece();
    void _fill();
    void _writeUpTo(qint64 most);
    void _end();
    bool _hasMore() const { return m_position < m_end; }
    QByteArray _head() const;
    QByteArray _lengthHeaders() const;

    QTcpSocket &m_socket; ///< The parent.
    HttpServer::Handler m_handler;
    QByteArray m_received;
    HttpRequest m_request;
    HttpReply m_reply;
    HttpRange m_range;     ///< Of the body, asked for.
    bool m_isPart = false; ///< The range was asked for; it may be that there is no such part.
    qint64 m_position = 0; ///< In the body.
    qint64 m_end = 0;      ///< Where sending it ends.
    QTimer m_next;
    bool m_answered = false;
    bool m_sending = false; ///< The head is written.
};

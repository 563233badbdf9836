#pragma once

#include "HttpServer.h"

#include <QTimer>

/// One connection: reads a request, sends the reply, closes. Goes with its socket.
class HttpConnection : public QObject
{
public:
    HttpConnection(QTcpSocket &socket, HttpServer::Handler handler);

private:
    void _read();
    void _send();
    void _sendPiece();
    void _close();
    QByteArray _head() const;

    QTcpSocket &m_socket; ///< The parent.
    HttpServer::Handler m_handler;
    QByteArray m_received;
    HttpReply m_reply;
    QByteArray m_rest; ///< Of the body, to be sent.
    QTimer m_next;
    bool m_answered = false;
};

#pragma once

#include <simulators/HttpServer.h>

#include <QTcpSocket>
#include <QTest>

/// A client that sends exactly what it is told and takes what comes, when it is told.
class RawClient
{
public:
    RawClient(const HttpServer &server, const QByteArray &request)
    {
        socket.connectToHost("127.0.0.1", server.port());
        socket.write(request);
    }

    bool hasEnded()
    {
        received += socket.readAll();
        return socket.state() == QAbstractSocket::UnconnectedState;
    }

    QByteArray head() const { return received.left(received.indexOf("\r\n\r\n") + 2); }
    QByteArray body() const { return received.mid(received.indexOf("\r\n\r\n") + 4); }

    QTcpSocket socket;
    QByteArray received;
};

inline QByteArray get(const QByteArray &target, const QByteArray &headers = {}, const QByteArray &method = "GET")
{
    return method + ' ' + target + " HTTP/1.1\r\nHost: h\r\n" + headers + "\r\n";
}

inline QByteArray exchanged(const HttpServer &server, const QByteArray &request)
{
    RawClient client(server, request);
    if (!QTest::qWaitFor([&] { return client.hasEnded(); }, 20'000))
        qFatal("No end of an answer");
    return client.received;
}

inline HttpReply digits()
{
    HttpReply reply = HttpReply::text("0123456789");
    reply.etag = "\"one\"";
    reply.offersRanges = true;
    return reply;
}

/// Byte n is n % 251; tells how far it was asked.
inline HttpReply counted(qint64 size, qint64 &furthest)
{
    HttpReply reply;
    reply.body = HttpBody::generated(size, [&furthest](qint64 offset, qint64 most) {
        furthest = std::max(furthest, offset + most);
        QByteArray piece(most, Qt::Uninitialized);
        for (qint64 i = 0; i < most; ++i)
            piece[i] = static_cast<char>((offset + i) % 251);
        return piece;
    });
    return reply;
}

#pragma once

#include <QByteArray>
#include <QString>
#include <QTest>

#include <algorithm>
#include <arpa/inet.h>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>

/// Answers one request with bytes that nobody holds, on a thread of its own.
class GeneratingServer
{
public:
    /// @p length bytes, announced or not.
    GeneratingServer(qint64 length, bool announced)
        : m_length(length)
        , m_announced(announced)
    {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        auto *const any = reinterpret_cast<sockaddr *>(&address);
        if (::bind(m_listener, any, size) != 0 || ::listen(m_listener, 1) != 0 ||
            ::getsockname(m_listener, any, &size) != 0)
            qFatal("There is no port");
        m_port = ntohs(address.sin_port);
        m_thread = std::thread([this] { _answer(); });
    }

    ~GeneratingServer()
    {
        ::shutdown(m_listener, SHUT_RDWR);
        m_thread.join();
        ::close(m_listener);
    }

    GeneratingServer(const GeneratingServer &) = delete;
    GeneratingServer &operator=(const GeneratingServer &) = delete;

    QUrl url() const { return QUrl(QString("http://127.0.0.1:%1/").arg(m_port)); }

private:
    void _answer() const
    {
        const int connection = ::accept(m_listener, nullptr, nullptr);
        QByteArray piece(65536, 'x');
        ::recv(connection, piece.data(), 1024, 0);
        piece.fill('x');
        QByteArray head = "HTTP/1.1 200 OK\r\nConnection: close\r\n";
        if (m_announced)
            head += "Content-Length: " + QByteArray::number(m_length) + "\r\n";
        head += "\r\n";
        bool goesOn = ::send(connection, head.constData(), size_t(head.size()), MSG_NOSIGNAL) > 0;
        for (qint64 left = m_length; goesOn && left > 0;) {
            const auto sent =
                ::send(connection, piece.constData(), size_t(std::min<qint64>(left, piece.size())), MSG_NOSIGNAL);
            goesOn = sent > 0;
            left -= sent;
        }
        ::close(connection);
    }

    const qint64 m_length;
    const bool m_announced;
    const int m_listener = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    int m_port = 0;
    std::thread m_thread;
};

#include "BusProbe.h"

#include "QWPlatform/foundation/files/FileDescriptor.h"

#include <QByteArrayList>
#include <QDeadlineTimer>
#include <QtEndian>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <poll.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <sys/un.h>
#include <unistd.h>

namespace platform
{

namespace
{
/// The value of @p key in one address ("unix:path=/run/user/1000/bus,guid=…"), with its percent signs decoded.
QByteArray valueOf(const QByteArray &address, const QByteArray &key)
{
    for (const QByteArray &pair : address.mid(address.indexOf(':') + 1).split(','))
        if (pair.startsWith(key) && pair.mid(key.size()).startsWith('='))
            return QByteArray::fromPercentEncoding(pair.mid(key.size() + 1));
    return {};
}

/// The socket's name as the kernel takes it: a path, or a zero byte and an abstract name; "" for another address.
QByteArray socketName(const QByteArray &address)
{
    if (!address.startsWith("unix:"))
        return {};
    const QByteArray abstract = valueOf(address, "abstract");
    return abstract.isEmpty() ? valueOf(address, "path") : QByteArray('\0' + abstract);
}

/// A connection that waits until a point in time and not longer.
class Conversation
{
public:
    Conversation(const QByteArray &name, QDeadlineTimer deadline)
        : m_socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0))
        , m_deadline(deadline)
    {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        if (name.size() > qsizetype(sizeof address.sun_path))
            return;
        std::memcpy(address.sun_path, name.constData(), static_cast<std::size_t>(name.size()));
        const auto size =
            static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + static_cast<std::size_t>(name.size()));
        _limitWaiting();
        const int connected = ::connect(m_socket.number(), reinterpret_cast<sockaddr *>(&address), size);
        isOpen = connected == 0 || errno == EAGAIN; // nobody took it, but somebody is there
    }

    void say(const QByteArray &text) const
    {
        (void)::send(m_socket.number(), text.constData(), static_cast<std::size_t>(text.size()),
                     MSG_NOSIGNAL | MSG_DONTWAIT);
    }

    /// What comes next; "" when nothing does.
    QByteArray hear() const
    {
        pollfd waiting{.fd = m_socket.number(), .events = POLLIN, .revents = 0};
        while (::poll(&waiting, 1, static_cast<int>(m_deadline.remainingTime())) < 0 && errno == EINTR)
            ;
        QByteArray text(512, Qt::Uninitialized);
        const auto size = ::recv(m_socket.number(), text.data(), static_cast<std::size_t>(text.size()), MSG_DONTWAIT);
        return text.left(std::max<qsizetype>(size, 0));
    }

    bool isOpen = false;

private:
    /// A connection waits where too many others wait to be taken.
    void _limitWaiting() const
    {
        const qint64 left = std::max<qint64>(m_deadline.remainingTime(), 1);
        const timeval limit{.tv_sec = left / 1000, .tv_usec = left % 1000 * 1000};
        ::setsockopt(m_socket.number(), SOL_SOCKET, SO_SNDTIMEO, &limit, sizeof limit);
    }

    FileDescriptor m_socket;
    QDeadlineTimer m_deadline;
};

void pad(QByteArray &message, qsizetype alignment)
{
    message.append((alignment - message.size() % alignment) % alignment, '\0');
}

void appendNumber(QByteArray &message, quint32 number)
{
    pad(message, 4);
    message.append(4, '\0');
    qToLittleEndian(number, message.data() + message.size() - 4);
}

/// A field of a message's head: its code, its type ('o', 's') and its text.
void appendField(QByteArray &fields, char code, char type, const QByteArray &text)
{
    pad(fields, 8);
    fields.append(code).append('\1').append(type).append('\0');
    appendNumber(fields, static_cast<quint32>(text.size()));
    fields.append(text).append('\0');
}

/// The call "Hello", with which everyone begins. Numbers are little endian, as the first byte says.
QByteArray hello()
{
    QByteArray fields;
    appendField(fields, 1, 'o', "/org/freedesktop/DBus");
    appendField(fields, 6, 's', "org.freedesktop.DBus");
    appendField(fields, 2, 's', "org.freedesktop.DBus");
    appendField(fields, 3, 's', "Hello");
    QByteArray message("l\1\0\1", 4);                                          // a call, without flags, protocol 1
    for (const quint32 number : {0U, 1U, static_cast<quint32>(fields.size())}) // length of the body, serial number
        appendNumber(message, number);
    message += fields;
    pad(message, 8);
    return message;
}

bool letsIn(const Conversation &bus)
{
    bus.say('\0' + QByteArray("AUTH EXTERNAL ") + QByteArray::number(::geteuid()).toHex() + "\r\n");
    const QByteArray answer = bus.hear();
    if (!answer.startsWith("OK"))
        return !answer.isEmpty(); // refused at once
    bus.say("BEGIN\r\n" + hello());
    return !bus.hear().isEmpty();
}
} // namespace

bool busAnswers(const QByteArray &address, std::chrono::milliseconds patience)
{
    const QDeadlineTimer deadline(patience);
    for (const QByteArray &one : address.split(';')) {
        const QByteArray name = socketName(one);
        if (name.isEmpty())
            return true;
        const Conversation bus(name, deadline);
        if (bus.isOpen) // the first that takes a connection is the one
            return letsIn(bus);
    }
    return true; // nobody there, which the library sees at once
}

} // namespace platform

#include "SocketAddress.h"

#include <arpa/inet.h>
#include <netinet/in.h>

namespace platform
{

namespace
{
template <class Address>
QByteArray rawBytesOf(const Address &address)
{
    return {reinterpret_cast<const char *>(&address), sizeof address};
}
} // namespace

QByteArray socketAddress(const QString &text, int port)
{
    const QByteArray numbers = text.toLatin1();
    sockaddr_in four{};
    if (::inet_pton(AF_INET, numbers.constData(), &four.sin_addr) == 1) {
        four.sin_family = AF_INET;
        four.sin_port = htons(static_cast<quint16>(port));
        return rawBytesOf(four);
    }
    sockaddr_in6 six{};
    if (::inet_pton(AF_INET6, numbers.constData(), &six.sin6_addr) != 1)
        return {};
    six.sin6_family = AF_INET6;
    six.sin6_port = htons(static_cast<quint16>(port));
    return rawBytesOf(six);
}

} // namespace platform

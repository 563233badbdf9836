#include "ListedServices.h"

#include "QWPlatform/network/services/SocketAddress.h"

#include <QDebug>
#include <QSet>

#include <algorithm>
#include <optional>

namespace platform
{

namespace
{
/// The address without the brackets that one of IPv6 needs; "" where they are missing or too many.
QString withoutBrackets(const QString &address)
{
    const bool hasBrackets = address.startsWith('[') && address.endsWith(']');
    const QString bare = hasBrackets ? address.sliced(1, address.size() - 2) : address;
    return bare.contains(':') == hasBrackets ? bare : QString();
}

/// A port number of 1 to 65535 in digits only, else 0.
int portOf(const QString &text)
{
    const bool isDigits =
        std::all_of(text.begin(), text.end(), [](QChar letter) { return letter >= u'0' && letter <= u'9'; });
    const int port = isDigits && text.size() <= 5 ? text.toInt() : 0;
    return port <= 65535 ? port : 0;
}

std::optional<ListedService> serviceOf(const QString &entry)
{
    const qsizetype equals = entry.lastIndexOf('=');
    const qsizetype colon = entry.lastIndexOf(':');
    if (equals <= 0 || colon < equals)
        return std::nullopt;
    const int port = portOf(entry.sliced(colon + 1));
    const QByteArray address = socketAddress(withoutBrackets(entry.sliced(equals + 1, colon - equals - 1)), port);
    if (port == 0 || address.isEmpty())
        return std::nullopt;
    return ListedService{QString::fromUtf8(QByteArray::fromPercentEncoding(entry.first(equals).toUtf8())), address,
                         port};
}
} // namespace

std::vector<ListedService> listedServices(const QString &list)
{
    std::vector<ListedService> services;
    QSet<QString> names;
    for (const QString &entry : list.split(';', Qt::SkipEmptyParts)) {
        if (services.size() == mostListedServices) {
            qWarning("QW_NET_SERVICES: what comes after the first %zu services is passed over", mostListedServices);
            break;
        }
        const auto service = serviceOf(entry.trimmed());
        const bool isNew = service && !names.contains(service->name);
        if (isNew) {
            names.insert(service->name);
            services.push_back(*service);
        } else
            qWarning("QW_NET_SERVICES: \"%s\" is no \"name=address:port\" of its own", qPrintable(entry));
    }
    return services;
}

} // namespace platform

#pragma once

#include <QWPlatform/qwplatform_private.h>

#include <QByteArray>
#include <QString>

#include <vector>

namespace platform
{

/// A service that is known without anybody announcing it.
struct ListedService
{
    QString name;
    QByteArray address; ///< A raw socket address.
    int port;
};

constexpr size_t mostListedServices = 1000;

/// The services of a list as in the environment: "name=address:port;…", an address of IPv6 in brackets. In a name,
/// "%3B" stands for ";" and "%25" for "%" before two hexadecimal digits; "=" may stand as it is. All are of the type
/// "_http._tcp." in "local.". An entry that makes no sense, or whose name came before, is passed over and logged; so is
/// all beyond mostListedServices.
QWPLATFORM_TEST_EXPORT std::vector<ListedService> listedServices(const QString &list);

} // namespace platform

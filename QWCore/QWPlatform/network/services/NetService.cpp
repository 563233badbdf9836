#include "NetService.h"

namespace platform
{

NetServiceDelegate::~NetServiceDelegate() = default;
void NetServiceDelegate::netServiceDidResolveAddress(NetService &) {}
void NetServiceDelegate::netServiceDidNotResolve(NetService &, const QVariantMap &) {}

NetService::~NetService() = default;

bool isSameService(const NetService &one, const NetService &other)
{
    return one.name() == other.name() && one.type() == other.type() && one.domain() == other.domain();
}

} // namespace platform

#include "AvahiResolution.h"

#include <array>
#include <avahi-common/error.h>
#include <avahi-common/timeval.h>
#include <cstring>
#include <netinet/in.h>

namespace platform
{

namespace
{
constexpr unsigned waitForFirst = 100; // milliseconds
constexpr unsigned waitForBetter = 500;

/// Over which protocol to ask, and for an address of which; the usual way first, since each costs several calls.
/// Addresses of IPv4 are not announced over IPv6.
struct Way
{
    AvahiProtocol over;
    AvahiProtocol wanted;
};
constexpr std::array ways{Way{AVAHI_PROTO_INET, AVAHI_PROTO_INET}, Way{AVAHI_PROTO_INET6, AVAHI_PROTO_INET6},
                          Way{AVAHI_PROTO_INET, AVAHI_PROTO_INET6}};

template <class Address>
std::string rawStringOf(const Address &address)
{
    return {reinterpret_cast<const char *>(&address), sizeof address};
}

std::string socketAddress4(const AvahiAddress &address, int port)
{
    sockaddr_in four{};
    four.sin_family = AF_INET;
    four.sin_port = htons(static_cast<std::uint16_t>(port));
    four.sin_addr.s_addr = address.data.ipv4.address; // in network byte order
    return rawStringOf(four);
}

std::string socketAddress6(const AvahiAddress &address, AvahiIfIndex interface, int port)
{
    sockaddr_in6 six{};
    six.sin6_family = AF_INET6;
    six.sin6_port = htons(static_cast<std::uint16_t>(port));
    std::memcpy(&six.sin6_addr, address.data.ipv6.address, sizeof six.sin6_addr);
    if (IN6_IS_ADDR_LINKLOCAL(&six.sin6_addr))
        six.sin6_scope_id = static_cast<std::uint32_t>(interface);
    return rawStringOf(six);
}
} // namespace

AvahiResolution::AvahiResolution(AvahiClient *client, const AvahiPoll *poll, const ServiceCommand &command)
    : m_question(command.question)
    , m_service(command.service)
    , m_client(client)
    , m_poll(poll)
    , m_open(ways.size())
{
    _wait(waitForFirst);
    _ask(0);
}

void AvahiResolution::_ask(std::size_t way)
{
    AvahiServiceResolver *resolver =
        avahi_service_resolver_new(m_client, AVAHI_IF_UNSPEC, ways.at(way).over, m_service.name.c_str(),
                                   withoutDot(m_service.type).c_str(), withoutDot(m_service.domain).c_str(),
                                   ways.at(way).wanted, AVAHI_LOOKUP_NO_TXT, &AvahiResolution::_callback, this);
    if (resolver)
        m_resolvers.emplace_back(resolver);
    else // such as IPv6 where the daemon does without
        _giveUpOne(avahi_strerror(avahi_client_errno(m_client)));
}

void AvahiResolution::_askAllWays()
{
    m_asksAllWays = true;
    for (std::size_t way = 1; way < ways.size(); ++way)
        _ask(way);
}

AvahiResolution::~AvahiResolution()
{
    if (m_timeout)
        m_poll->timeout_free(m_timeout);
}

void AvahiResolution::_callback(AvahiServiceResolver *resolver, AvahiIfIndex interface, AvahiProtocol,
                                AvahiResolverEvent event, const char *, const char *, const char *, const char *,
                                const AvahiAddress *address, std::uint16_t port, AvahiStringList *,
                                AvahiLookupResultFlags, void *resolution)
{
    auto &self = *static_cast<AvahiResolution *>(resolution);
    if (event == AVAHI_RESOLVER_FOUND && address)
        self._take(*address, interface, port);
    else
        self._giveUpOne(avahi_strerror(avahi_client_errno(avahi_service_resolver_get_client(resolver))));
}

void AvahiResolution::_take(const AvahiAddress &address, AvahiIfIndex interface, int port)
{
    if (m_isOver)
        return;
    m_port = port;
    if (address.proto == AVAHI_PROTO_INET) {
        m_address4 = socketAddress4(address, port);
        m_isOver = true;
    } else if (m_address6.empty()) {
        m_address6 = socketAddress6(address, interface, port);
        _wait(waitForBetter);
    }
}

void AvahiResolution::_giveUpOne(const char *reason)
{
    m_reason = reason;
    if (--m_open == 0)
        m_isOver = true;
    else if (!m_asksAllWays)
        _askAllWays();
}

void AvahiResolution::_wait(unsigned milliseconds)
{
    timeval until{};
    avahi_elapse_time(&until, milliseconds, 0);
    if (m_timeout)
        return m_poll->timeout_update(m_timeout, &until);
    m_timeout = m_poll->timeout_new(
        m_poll, &until, [](AvahiTimeout *, void *self) { static_cast<AvahiResolution *>(self)->_timeIsUp(); }, this);
}

void AvahiResolution::_timeIsUp()
{
    if (!m_address6.empty())
        m_isOver = true;
    else if (!m_asksAllWays)
        _askAllWays();
}

ServiceEvent AvahiResolution::event() const
{
    ServiceEvent event;
    event.question = m_question;
    event.port = m_port;
    event.reason = m_reason;
    for (const std::string &address : {m_address4, m_address6})
        if (!address.empty())
            event.addresses.push_back(address);
    event.kind = event.addresses.empty() ? ServiceEvent::Kind::NotResolved : ServiceEvent::Kind::Resolved;
    return event;
}

} // namespace platform

#pragma once

#include "AvahiPointers.h"
#include "ServiceEvent.h"

#include <vector>

namespace platform
{

/// Looks for addresses and port of one service: an address of IPv4, which ends it, and beside that one of IPv6 when
/// nobody answers quickly. One of IPv6 waits a little for the other, since devices that speak both may answer in any
/// order.
class AvahiResolution
{
public:
    AvahiResolution(AvahiClient *client, const AvahiPoll *poll, const ServiceCommand &command);
    ~AvahiResolution();
    AvahiResolution(const AvahiResolution &) = delete;
    AvahiResolution &operator=(const AvahiResolution &) = delete;

    bool isOver() const { return m_isOver; }

    /// Resolved or not, once it is over.
    ServiceEvent event() const;

private:
    static void _callback(AvahiServiceResolver *resolver, AvahiIfIndex interface, AvahiProtocol protocol,
                          AvahiResolverEvent event, const char *name, const char *type, const char *domain,
                          const char *hostName, const AvahiAddress *address, std::uint16_t port, AvahiStringList *texts,
                          AvahiLookupResultFlags flags, void *resolution);

    void _ask(std::size_t way);
    void _askAllWays();
    void _wait(unsigned milliseconds);
    void _timeIsUp();
    void _take(const AvahiAddress &address, AvahiIfIndex interface, int port);
    void _giveUpOne(const char *reason);

    const std::uint64_t m_question;
    const ServiceName m_service;
    AvahiClient *const m_client;
    const AvahiPoll *const m_poll;
    std::vector<AvahiResolverPointer> m_resolvers;
    std::size_t m_open = 0; ///< Ways that have not failed.
    bool m_asksAllWays = false;
    AvahiTimeout *m_timeout = nullptr;
    std::string m_address4;
    std::string m_address6;
    int m_port = -1;
    std::string m_reason;
    bool m_isOver = false;
};

} // namespace platform

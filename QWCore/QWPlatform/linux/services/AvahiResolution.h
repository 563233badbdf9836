#pragma once

#include "AvahiPointers.h"
#include "ServiceEvent.h"

#include <vector>

namespace platform
{

/// Looks for addresses and port of one service, over both protocols at once. An address of IPv4 ends it; one of IPv6
/// waits a little for that, since devices that speak both may answer in any order.
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

    void _take(const AvahiAddress &address, AvahiIfIndex interface, int port);
    void _giveUpOne(const char *reason);
    void _waitForBetter();

    const std::uint64_t m_question;
    const AvahiPoll *const m_poll;
    std::vector<AvahiResolverPointer> m_resolvers;
    std::size_t m_waiting = 0; ///< For that many resolvers.
    AvahiTimeout *m_timeout = nullptr;
    std::string m_address4;
    std::string m_address6;
    int m_port = -1;
    std::string m_reason;
    bool m_isOver = false;
};

} // namespace platform

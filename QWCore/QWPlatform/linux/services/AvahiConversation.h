#pragma once

#include "AvahiPointers.h"
#include "AvahiResolution.h"
#include "ServiceExchange.h"

#include <map>
#include <poll.h>

namespace platform
{

/// One client of the Avahi daemon, and what it is asked for. On a thread of its own: each call of the library may wait
/// for the daemon.
class AvahiConversation
{
public:
    explicit AvahiConversation(ServiceExchange &exchange);
    ~AvahiConversation();
    AvahiConversation(const AvahiConversation &) = delete;
    AvahiConversation &operator=(const AvahiConversation &) = delete;

    /// Until the exchange is closed, or until daemon or bus have gone, which it tells.
    void run();

private:
    static void _clientCallback(AvahiClient *client, AvahiClientState state, void *conversation);
    static void _browserCallback(AvahiServiceBrowser *browser, AvahiIfIndex interface, AvahiProtocol protocol,
                                 AvahiBrowserEvent event, const char *name, const char *type, const char *domain,
                                 AvahiLookupResultFlags flags, void *conversation);
    static int _poll(pollfd *descriptors, unsigned count, int timeout, void *conversation);

    void _connect();
    void _turn();
    void _obey();
    void _obey(const ServiceCommand &command);
    void _search(const ServiceName &typeAndDomain);
    void _tellAnswers();
    void _tell(ServiceEvent event);
    void _publish();
    void _fail(const char *reason);

    ServiceExchange &m_exchange;
    std::vector<ServiceEvent> m_news; ///< Told together, so that who hears it knows what comes with it.
    bool m_isOver = false;
    // Each needs those above it.
    AvahiPollPointer m_loop;
    AvahiClientPointer m_client;
    AvahiBrowserPointer m_browser;
    std::map<std::uint64_t, std::unique_ptr<AvahiResolution>> m_resolutions;
};

} // namespace platform

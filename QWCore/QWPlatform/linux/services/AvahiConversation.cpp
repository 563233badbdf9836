#include "AvahiConversation.h"

#include <avahi-common/error.h>

#include <utility>

namespace platform
{

namespace
{
constexpr std::size_t mostNews = 256; ///< A network that never rests is told of, too.
}

AvahiConversation::AvahiConversation(ServiceExchange &exchange)
    : m_exchange(exchange)
    , m_loop(avahi_simple_poll_new())
{
}

AvahiConversation::~AvahiConversation() = default;

void AvahiConversation::run()
{
    _connect();
    if (!m_isOver)
        _obey();
    if (!m_isOver)
        _tell({.kind = ServiceEvent::Kind::Begun});
    while (!m_isOver)
        _turn();
    _publish();
}

void AvahiConversation::_turn()
{
    if (avahi_simple_poll_iterate(m_loop.get(), -1) != 0)
        _fail("waiting for the daemon failed");
    _tellAnswers();
}

void AvahiConversation::_connect()
{
    if (!m_loop || m_exchange.descriptor() < 0)
        return _fail("no more files can be opened");
    avahi_simple_poll_set_func(m_loop.get(), &AvahiConversation::_poll, this);
    const AvahiPoll *poll = avahi_simple_poll_get(m_loop.get());
    poll->watch_new(
        poll, m_exchange.descriptor(), AVAHI_WATCH_IN,
        [](AvahiWatch *, int, AvahiWatchEvent, void *self) { static_cast<AvahiConversation *>(self)->_obey(); }, this);
    int error = 0;
    m_client.reset(
        avahi_client_new(poll, static_cast<AvahiClientFlags>(0), &AvahiConversation::_clientCallback, this, &error));
    if (!m_client)
        _fail(avahi_strerror(error));
}

void AvahiConversation::_clientCallback(AvahiClient *client, AvahiClientState state, void *conversation)
{
    if (state == AVAHI_CLIENT_FAILURE)
        static_cast<AvahiConversation *>(conversation)->_fail(avahi_strerror(avahi_client_errno(client)));
}

/// Looks before it sleeps, and tells what has been heard so far when it must.
int AvahiConversation::_poll(pollfd *descriptors, unsigned count, int timeout, void *conversation)
{
    const int ready = ::poll(descriptors, count, 0);
    if (ready != 0 || timeout == 0)
        return ready;
    static_cast<AvahiConversation *>(conversation)->_publish();
    return ::poll(descriptors, count, timeout);
}

void AvahiConversation::_obey()
{
    const auto commands = m_exchange.takeCommands();
    if (!commands) {
        m_isOver = true;
        return;
    }
    for (const ServiceCommand &command : *commands)
        if (!m_isOver)
            _obey(command);
}

void AvahiConversation::_obey(const ServiceCommand &command)
{
    switch (command.kind) {
    case ServiceCommand::Kind::Search:
        return _search(command.service);
    case ServiceCommand::Kind::StopSearch:
        return m_browser.reset();
    case ServiceCommand::Kind::Resolve:
        m_resolutions[command.question] =
            std::make_unique<AvahiResolution>(m_client.get(), avahi_simple_poll_get(m_loop.get()), command);
        return _tellAnswers();
    case ServiceCommand::Kind::Forget:
        m_resolutions.erase(command.question);
    }
}

void AvahiConversation::_search(const ServiceName &typeAndDomain)
{
    m_browser.reset(avahi_service_browser_new(
        m_client.get(), AVAHI_IF_UNSPEC, AVAHI_PROTO_UNSPEC, withoutDot(typeAndDomain.type).c_str(),
        withoutDot(typeAndDomain.domain).c_str(), AvahiLookupFlags(0), &AvahiConversation::_browserCallback, this));
    if (!m_browser)
        _fail(avahi_strerror(avahi_client_errno(m_client.get())));
}

void AvahiConversation::_browserCallback(AvahiServiceBrowser *browser, AvahiIfIndex interface, AvahiProtocol protocol,
                                         AvahiBrowserEvent event, const char *name, const char *type,
                                         const char *domain, AvahiLookupResultFlags, void *conversation)
{
    auto &self = *static_cast<AvahiConversation *>(conversation);
    if (event == AVAHI_BROWSER_FAILURE)
        return self._fail(avahi_strerror(avahi_client_errno(avahi_service_browser_get_client(browser))));
    if (event != AVAHI_BROWSER_NEW && event != AVAHI_BROWSER_REMOVE)
        return;
    self._tell({.kind = event == AVAHI_BROWSER_NEW ? ServiceEvent::Kind::Appeared : ServiceEvent::Kind::Vanished,
                .service = {name, std::string(type) + '.', std::string(domain) + '.'},
                .interface = interface,
                .protocol = protocol});
}

void AvahiConversation::_tellAnswers()
{
    for (auto entry = m_resolutions.begin(); entry != m_resolutions.end();) {
        if (entry->second->isOver()) {
            _tell(entry->second->event());
            entry = m_resolutions.erase(entry);
        } else {
            ++entry;
        }
    }
}

void AvahiConversation::_tell(ServiceEvent event)
{
    m_news.push_back(std::move(event));
    if (m_news.size() >= mostNews)
        _publish();
}

void AvahiConversation::_publish()
{
    m_exchange.publish(std::exchange(m_news, {}));
}

void AvahiConversation::_fail(const char *reason)
{
    if (!std::exchange(m_isOver, true))
        _tell({.kind = ServiceEvent::Kind::Failed, .reason = reason});
}

} // namespace platform

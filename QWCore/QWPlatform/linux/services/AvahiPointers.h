#pragma once

#include <avahi-client/client.h>
#include <avahi-client/lookup.h>
#include <avahi-common/simple-watch.h>
#include <memory>

namespace platform
{

/// Owners of what Avahi's library hands out.
template <auto Free>
struct AvahiDeleter
{
    template <class T>
    void operator()(T *pointer) const
    {
        Free(pointer);
    }
};

using AvahiPollPointer = std::unique_ptr<AvahiSimplePoll, AvahiDeleter<avahi_simple_poll_free>>;
using AvahiClientPointer = std::unique_ptr<AvahiClient, AvahiDeleter<avahi_client_free>>;
using AvahiBrowserPointer = std::unique_ptr<AvahiServiceBrowser, AvahiDeleter<avahi_service_browser_free>>;
using AvahiResolverPointer = std::unique_ptr<AvahiServiceResolver, AvahiDeleter<avahi_service_resolver_free>>;

/// As the daemon wants type and domain: without the dot at the end.
inline std::string withoutDot(const std::string &text)
{
    return text.ends_with('.') ? text.substr(0, text.size() - 1) : text;
}

} // namespace platform

#include <avahi-client/client.h>
#include <avahi-client/lookup.h>
#include <avahi-common/simple-watch.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <spawn.h>
#include <string>
#include <sys/wait.h>

extern char **environ;

namespace
{
AvahiSimplePoll *loop = nullptr;
std::string address;

void resolved(AvahiServiceResolver *, AvahiIfIndex, AvahiProtocol, AvahiResolverEvent event, const char *, const char *,
              const char *, const char *, const AvahiAddress *found, std::uint16_t port, AvahiStringList *,
              AvahiLookupResultFlags, void *)
{
    if (event != AVAHI_RESOLVER_FOUND)
        std::exit(1);
    char text[AVAHI_ADDRESS_STR_MAX];
    avahi_address_snprint(text, sizeof text, found);
    address = "http://" + std::string(text) + ':' + std::to_string(port) + "/list.plist";
    avahi_simple_poll_quit(loop);
}

void browsed(AvahiServiceBrowser *browser, AvahiIfIndex interface, AvahiProtocol protocol, AvahiBrowserEvent event,
             const char *name, const char *type, const char *domain, AvahiLookupResultFlags, void *)
{
    if (event == AVAHI_BROWSER_NEW && std::strncmp(name, "Vesk", 4) == 0)
        avahi_service_resolver_new(avahi_service_browser_get_client(browser), interface, protocol, name, type, domain,
                                   AVAHI_PROTO_INET, AVAHI_LOOKUP_NO_TXT, resolved, nullptr);
}

void clientChanged(AvahiClient *, AvahiClientState, void *) {}

bool fetch()
{
    std::string program = "curl";
    std::string quiet = "-sf";
    std::string output = "-o/dev/null";
    char *arguments[] = {program.data(), quiet.data(), output.data(), address.data(), nullptr};
    pid_t child = -1;
    int status = -1;
    return posix_spawnp(&child, "curl", nullptr, nullptr, arguments, environ) == 0 &&
           waitpid(child, &status, 0) == child && status == 0;
}
} // namespace

/// Finds and resolves the first recorder with Avahi's library alone, gets its list with curl, and prints how many
/// milliseconds it took.
int main()
{
    const auto begin = std::chrono::steady_clock::now();
    loop = avahi_simple_poll_new();
    AvahiClient *client =
        avahi_client_new(avahi_simple_poll_get(loop), AvahiClientFlags(0), clientChanged, nullptr, nullptr);
    if (!client || !avahi_service_browser_new(client, AVAHI_IF_UNSPEC, AVAHI_PROTO_INET, "_http._tcp", "local",
                                              AvahiLookupFlags(0), browsed, nullptr))
        return 1;
    avahi_simple_poll_loop(loop);
    if (!fetch())
        return 1;
    const auto time = std::chrono::steady_clock::now() - begin;
    std::printf("%f\n", std::chrono::duration<double, std::milli>(time).count());
}

#include "AvahiConversation.h"
#include "AvahiLoader.h"

extern "C" [[gnu::visibility("default")]] void qw_speak_to_avahi(platform::ServiceExchange &exchange)
{
    platform::AvahiConversation(exchange).run();
}

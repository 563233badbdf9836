#pragma once

namespace platform
{

class ServiceExchange;

/// Speaks to the Avahi daemon over the system's bus until @p exchange is closed, or fails. Blocks, for as long as
/// libraries wait that nothing can interrupt. Avahi's library is in a module of its own, loaded with the first call.
void speakToAvahi(ServiceExchange &exchange);

/// Name and type of the module's one exported function, which does that.
constexpr auto avahiFunctionName = "qw_speak_to_avahi";
using AvahiFunction = void (*)(ServiceExchange &exchange);

} // namespace platform

#pragma once

#include "ServiceSession.h"

namespace platform
{

/// Speaks to the Avahi daemon over the system's bus. Its library is in a module of its own, loaded with the first call:
/// on the main thread, since libraries that are loaded while a process ends are begun a second time.
ServiceSession::Conversation avahiConversation();

/// Name and type of the module's one exported function. It blocks for as long as libraries wait that nothing can
/// interrupt.
constexpr auto avahiFunctionName = "qw_speak_to_avahi";
using AvahiFunction = void (*)(ServiceExchange &exchange);

} // namespace platform

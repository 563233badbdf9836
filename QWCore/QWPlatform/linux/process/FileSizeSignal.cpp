#include "FileSizeSignal.h"

#include <csignal>

namespace platform
{

void ignoreFileSizeSignal()
{
    struct sigaction action;
    if (::sigaction(SIGXFSZ, nullptr, &action) != 0 || action.sa_handler != SIG_DFL)
        return;
    action = {};
    action.sa_handler = [](int) {
    }; // what is ignored would stay ignored in the programs that are started, a handler not
    action.sa_flags = SA_RESTART;
    ::sigaction(SIGXFSZ, &action, nullptr);
}

} // namespace platform

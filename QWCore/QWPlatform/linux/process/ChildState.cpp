#include "ChildState.h"

#include <cerrno>
#include <csignal>
#include <sys/wait.h>

namespace platform
{

namespace
{
/// What waitid() says of @p child, which stays to be asked again; its id is 0 when there is nothing to say.
siginfo_t stateOf(pid_t child, int options)
{
    siginfo_t state = {};
    int failed = -1;
    do
        failed = ::waitid(P_PID, static_cast<id_t>(child), &state, options | WNOWAIT);
    while (failed != 0 && errno == EINTR);
    return failed == 0 ? state : siginfo_t{};
}
} // namespace

bool hasEnded(pid_t child)
{
    return stateOf(child, WEXITED | WNOHANG).si_pid == child;
}

void endIfStopped(pid_t child)
{
    if (stateOf(child, WSTOPPED | WNOHANG).si_pid == child)
        ::kill(child, SIGKILL);
}

bool awaitEnd(pid_t child)
{
    siginfo_t state = stateOf(child, WEXITED | WSTOPPED);
    if (state.si_pid == child && state.si_code == CLD_STOPPED) {
        ::kill(child, SIGKILL);
        state = stateOf(child, WEXITED);
    }
    return state.si_pid == child;
}

} // namespace platform

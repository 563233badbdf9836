#include "TrialProcess.h"

#include "HostProcess.h"
#include "Isolation.h"

#include <cerrno>
#include <chrono>
#include <csignal>
#include <fstream>
#include <string>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

using namespace std::chrono_literals;

namespace
{
constexpr auto longestEnding = 2s; ///< What then still lives is stuck in the kernel.
constexpr auto endPollTime = 1ms;

volatile std::sig_atomic_t current = 0; ///< The child's id while there is one.

/// To be killed itself would leave what the plug-in began.
extern "C" void endAttempt(int)
{
    if (current > 0)
        ::kill(current, SIGKILL);
}

/// What the child does first.
void followWatcher(pid_t watcher)
{
    std::signal(SIGTERM, SIG_DFL);
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (::getppid() != watcher)
        endProcess(ValidatorStatus::Failed);
}

int awaitEnd(pid_t child)
{
    int status = -1;
    for (;;) {
        const pid_t changed = ::waitpid(child, &status, WUNTRACED);
        if (changed == child && !WIFSTOPPED(status))
            return status;
        if (changed == child)
            ::kill(child, SIGKILL);
        else if (errno != EINTR)
            return -1;
    }
}

void killChildren()
{
    const std::string self = std::to_string(::getpid());
    std::ifstream children("/proc/self/task/" + self + "/children");
    for (pid_t child = 0; children >> child;)
        ::kill(child, SIGKILL);
}

/// Orphans come to this process, also those that left its group. The end of one may bring others.
void endOrphans()
{
    const auto deadline = std::chrono::steady_clock::now() + longestEnding;
    for (;;) {
        killChildren();
        pid_t reaped = 0;
        while ((reaped = ::waitpid(-1, nullptr, WNOHANG)) > 0) {
        }
        if (reaped < 0 || std::chrono::steady_clock::now() > deadline) // none is left, or none will be reaped
            return;
        std::this_thread::sleep_for(endPollTime);
    }
}
} // namespace

int runInChild(const std::function<void()> &attempt)
{
    ::prctl(PR_SET_CHILD_SUBREAPER, 1);
    std::signal(SIGTERM, endAttempt);
    const pid_t watcher = ::getpid();
    const pid_t child = ::fork();
    if (child == 0) {
        followWatcher(watcher);
        attempt();
        endProcess(ValidatorStatus::Failed);
    }
    current = child;
    if (!isHostThere()) // the signal came before the child was known
        endAttempt(SIGTERM);
    const int status = child < 0 ? -1 : awaitEnd(child);
    current = 0;
    endOrphans();
    return status;
}

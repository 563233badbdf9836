#include "Isolation.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

namespace
{
constexpr const char *displayVariables[] = {"DISPLAY", "WAYLAND_DISPLAY", "WAYLAND_SOCKET", "XAUTHORITY"};

void disableCoreDumps()
{
    const rlimit none{0, 0};
    ::setrlimit(RLIMIT_CORE, &none);
    ::prctl(PR_SET_DUMPABLE, 0); // dumps that are piped to a program do not heed the limit
}

void hideDisplay()
{
    for (const char *name : displayVariables)
        ::unsetenv(name);
    ::setenv("QT_QPA_PLATFORM", "offscreen", 1);
}
} // namespace

void isolateProcess()
{
    disableCoreDumps();
    hideDisplay();
    ::dup2(STDERR_FILENO, STDOUT_FILENO);
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    std::atexit([] { endProcess(ValidatorStatus::Failed); }); // registered first, so it runs last
}

void endProcess(ValidatorStatus status)
{
    std::fflush(stderr);
    ::_exit(static_cast<int>(status));
}

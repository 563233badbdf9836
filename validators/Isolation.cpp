#include "Isolation.h"

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

namespace
{
constexpr const char *displayVariables[] = {"DISPLAY", "WAYLAND_DISPLAY", "WAYLAND_SOCKET", "XAUTHORITY"};

/// The most that a plug-in may take, in bytes: large sample libraries fit, and half of the machine's memory stays.
constexpr rlim_t mostMemory = rlim_t(4) << 30;

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

rlim_t pageSize()
{
    return static_cast<rlim_t>(::sysconf(_SC_PAGESIZE));
}

/// What counts against the limit of data already, in bytes. A sanitizer, for one, has reserved a lot.
rlim_t takenMemory()
{
    std::ifstream statistics("/proc/self/statm");
    rlim_t pages = 0;
    for (int field = 0; field < 6; ++field) // the sixth is that of data and stack
        statistics >> pages;
    return pages * pageSize();
}
} // namespace

void isolateProcess()
{
    disableCoreDumps();
    hideDisplay();
    ::dup2(STDERR_FILENO, STDOUT_FILENO);
    std::signal(SIGXFSZ, SIG_IGN);                            // the write fails, which is told
    std::atexit([] { endProcess(ValidatorStatus::Failed); }); // registered first, so it runs last
}

void limitMemory()
{
    const rlim_t half = static_cast<rlim_t>(::sysconf(_SC_PHYS_PAGES)) * pageSize() / 2;
    const rlim_t most = takenMemory() + std::min(mostMemory, half);
    const rlimit limit{most, most};
    ::setrlimit(RLIMIT_DATA, &limit);
}

void endProcess(ValidatorStatus status)
{
    std::fflush(stderr);
    ::_exit(static_cast<int>(status));
}

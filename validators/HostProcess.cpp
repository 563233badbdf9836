#include "HostProcess.h"

#include "Isolation.h"

#include <csignal>
#include <cstdlib>
#include <sys/prctl.h>
#include <unistd.h>

namespace
{
pid_t host = 0;

/// The one that the host says it is; else whoever started this process.
pid_t idOfHost()
{
    const char *const told = std::getenv("QW_HOST_PROCESS");
    return told ? static_cast<pid_t>(std::strtol(told, nullptr, 10)) : ::getppid();
}
} // namespace

void followHost()
{
    host = idOfHost();
    ::prctl(PR_SET_PDEATHSIG, SIGTERM);
    if (!isHostThere()) // it may have gone before this process asked to be told
        endProcess(ValidatorStatus::Failed);
}

bool isHostThere()
{
    return ::getppid() == host;
}

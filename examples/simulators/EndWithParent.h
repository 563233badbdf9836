#pragma once

#include <csignal>
#include <sys/prctl.h>
#include <unistd.h>

/// Ends this process with its parent, so that a script which dies leaves no simulator behind.
inline void endWithParent()
{
    const pid_t parent = ::getppid();
    ::prctl(PR_SET_PDEATHSIG, SIGTERM);
    if (::getppid() != parent)
        ::raise(SIGTERM); // it went in between
}

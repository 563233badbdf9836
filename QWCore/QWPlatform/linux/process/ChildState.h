#pragma once

#include <sys/types.h>

namespace platform
{

/// Whether the child has ended; it stays to be reaped.
bool hasEnded(pid_t child);

/// A child that stops itself would hold its parent for ever, its own watchdog with it: it is killed.
void endIfStopped(pid_t child);

/// Waits until the child has ended, killing it when it stops itself. False when there is no such child any more.
bool awaitEnd(pid_t child);

} // namespace platform

#pragma once

#include <functional>

/// Runs @p attempt in a child process and waits until it has ended, and all that it began: no process of a plug-in
/// outlives its trial. A child that stops itself is killed, and so is any one when SIGTERM comes. Gives the wait
/// status; -1 when there is no child to be had. Only before this process has threads of its own.
int runInChild(const std::function<void()> &attempt);

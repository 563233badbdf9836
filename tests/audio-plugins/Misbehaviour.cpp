#include "Misbehaviour.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <unistd.h>

namespace
{
/// Fills pages, however little the compiler makes of the rest: tests cut libraries short within what is mapped.
[[gnu::used]] const char ballast[16384] = {1};

/// Runs inside dlopen.
[[gnu::constructor]] void loaded()
{
    if (behaviour == Behaviour::CrashAtLoad)
        crash();
}
} // namespace

void crash()
{
    std::signal(SIGSEGV, SIG_DFL);
    std::raise(SIGSEGV);
    std::abort();
}

void misbehaveAtOpen()
{
    if (behaviour == Behaviour::CrashAtOpen || behaviour == Behaviour::CrashAtInstantiate)
        crash();
    if (behaviour == Behaviour::Exiting)
        std::exit(0);
    while (behaviour == Behaviour::Hanging)
        ::pause();
    if (behaviour != Behaviour::Printing)
        return;
    std::puts("The plug-in talks to standard output.");
    std::fflush(stdout);
    [[maybe_unused]] const auto written = ::write(STDOUT_FILENO, "Twice.\n", 7);
}

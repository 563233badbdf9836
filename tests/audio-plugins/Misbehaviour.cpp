#include "Misbehaviour.h"

#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>
#include <sys/mman.h>
#include <thread>
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
using Clock = std::chrono::steady_clock;

constexpr auto computingTime = std::chrono::milliseconds(100);
constexpr int noisySamples = 5000; ///< More than a trial in a hurry looks at.
int samplesGiven = 0;
std::atomic<bool> isComputed = false;

std::string inHome(const char *name)
{
    return std::string(std::getenv("HOME")) + '/' + name;
}

/// Whether this home sees it the first time.
bool isFirstTime()
{
    const std::string mark = inHome("mark");
    const bool isFirst = ::access(mark.c_str(), F_OK) != 0;
    std::ofstream(mark).put('x');
    return isFirst;
}

/// A thread that has only begun when the plug-in is to be closed again.
void compute()
{
    for (const auto start = Clock::now(); Clock::now() - start < computingTime;) {
    }
    isComputed = true;
    ::pause();
}

void print()
{
    std::puts("The plug-in talks to standard output.");
    std::fflush(stdout);
    [[maybe_unused]] const auto written = ::write(STDOUT_FILENO, "Twice.\n", 7);
}

/// A process that stays, in a session of its own or not; its id.
pid_t beginProcess(bool hasOwnSession)
{
    const pid_t process = ::fork();
    if (process == 0 && hasOwnSession)
        ::setsid();
    while (process == 0)
        ::pause();
    return process;
}

/// Their ids stand in the file "processes" of the home folder.
void beginProcesses()
{
    const pid_t one = beginProcess(false);
    const pid_t other = beginProcess(true);
    std::ofstream(inHome("processes.new")) << one << ' ' << other << '\n';
    std::rename(inHome("processes.new").c_str(), inHome("processes").c_str());
}

/// Takes memory, without using it, until there is none or it is more than any machine's.
bool isMemoryEndless()
{
    constexpr std::size_t piece = std::size_t(1) << 30;
    for (int i = 0; i < 64; ++i)
        if (::mmap(nullptr, piece, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0) ==
            MAP_FAILED)
            return false;
    return true;
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
    if (behaviour == Behaviour::CrashAtOpen || behaviour == Behaviour::CrashAtInstantiate ||
        (behaviour == Behaviour::Greedy && !isMemoryEndless()))
        crash();
    if (behaviour == Behaviour::Exiting || (behaviour == Behaviour::ExitingAtFirst && isFirstTime()))
        std::exit(0);
    if (behaviour == Behaviour::Stopping)
        std::raise(SIGSTOP);
    if (behaviour == Behaviour::KilledAtFirst && isFirstTime())
        std::raise(SIGKILL);
    if (behaviour == Behaviour::Forking || behaviour == Behaviour::ForkingAndHanging)
        beginProcesses();
    if (behaviour == Behaviour::Threading)
        std::thread(compute).detach();
    if (behaviour == Behaviour::Printing)
        print();
    while (behaviour == Behaviour::Hanging || behaviour == Behaviour::ForkingAndHanging)
        ::pause();
}

void misbehaveAtClose()
{
    if ((behaviour == Behaviour::CrashAtFirstClose && isFirstTime()) || behaviour == Behaviour::CrashAtClose ||
        (behaviour == Behaviour::Threading && !isComputed))
        crash();
}

bool isNoisy()
{
    return behaviour == Behaviour::NotFinite ||
           (behaviour == Behaviour::NotFiniteAtFirst && samplesGiven++ < noisySamples);
}

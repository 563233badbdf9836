#include "Watchdog.h"

#include "Isolation.h"

#include <cstdio>
#include <thread>

Watchdog::Watchdog(std::chrono::duration<double> patience)
    : m_patience(std::chrono::duration_cast<Clock::duration>(patience))
    , m_deadline(Clock::now() + m_patience)
{
    std::thread([this] { _watch(); }).detach();
}

void Watchdog::progress(const char *step)
{
    m_step = step;
    m_deadline = Clock::now() + m_patience;
}

void Watchdog::_watch() const
{
    for (Clock::time_point deadline = m_deadline; Clock::now() < deadline; deadline = m_deadline)
        std::this_thread::sleep_until(deadline);
    std::fprintf(stderr, "The plug-in hangs (%s).\n", m_step.load());
    endProcess(ValidatorStatus::NoProgress);
}

#include "Watchdog.h"

#include "Isolation.h"

#include <cstdio>
#include <thread>
#include <unistd.h>

Watchdog::Watchdog(std::chrono::duration<double> patience, const QByteArray &subject, std::atomic<TrialStep> &step)
    : m_subject(subject)
    , m_patience(std::chrono::duration_cast<Clock::duration>(patience))
    , m_step(step)
    , m_deadline(Clock::now() + m_patience)
{
    std::thread([this] { _watch(); }).detach();
}

void Watchdog::progress(TrialStep step)
{
    m_step = step;
    m_deadline = Clock::now() + m_patience;
}

void Watchdog::_watch() const
{
    for (Clock::time_point deadline = m_deadline; Clock::now() < deadline; deadline = m_deadline)
        std::this_thread::sleep_until(deadline);
    // Past the streams: the plug-in may hang while it holds one of their locks.
    ::dprintf(STDERR_FILENO, "%s: The plug-in hangs (%s).\n", m_subject.constData(), nameOf(m_step));
    ::_exit(static_cast<int>(ValidatorStatus::NoProgress));
}

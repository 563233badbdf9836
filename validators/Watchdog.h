#pragma once

#include "TrialStep.h"

#include <QByteArray>

#include <atomic>
#include <chrono>

/// Ends the process when nothing was reported for too long: the host waits for a validator without a time-out. Lives
/// until the process ends.
class Watchdog
{
public:
    using Clock = std::chrono::steady_clock;

    /// @p subject begins the sentence that is printed at the end; @p step is where progress is noted.
    Watchdog(std::chrono::duration<double> patience, const QByteArray &subject, std::atomic<TrialStep> &step);
    Watchdog(const Watchdog &) = delete;
    Watchdog &operator=(const Watchdog &) = delete;

    /// Reports that @p step begins, or goes on.
    void progress(TrialStep step);

private:
    [[noreturn]] void _watch() const;

    const QByteArray m_subject;
    const Clock::duration m_patience;
    std::atomic<TrialStep> &m_step;
    std::atomic<Clock::time_point> m_deadline;
};

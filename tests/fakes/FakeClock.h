#pragma once

#include <QWPlatform/foundation/Clock.h>

#include <QTimeZone>

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <set>
#include <thread>

/// Stands still until the test advances it; starts on 2009-03-05 16:07:00 UTC. Threads that sleep wait for the test;
/// a sleep of the test's own thread advances the clock itself.
class FakeClock : public platform::Clock
{
public:
    QDateTime now() const override { return start.addMSecs(monotonicNanoseconds() / 1'000'000); }
    qint64 monotonicNanoseconds() const override;
    void sleep(std::chrono::nanoseconds time, std::stop_token stop) override;

    void advance(std::chrono::nanoseconds time);

    /// Waits until so many threads sleep; false when that takes longer than ten seconds.
    bool waitForSleepers(std::size_t count);

    QDateTime start{QDate(2009, 3, 5), QTime(16, 7), QTimeZone::utc()};

private:
    std::size_t _sleepers() const;

    const std::thread::id m_test = std::this_thread::get_id();
    mutable std::mutex m_mutex; ///< Guards the rest.
    std::condition_variable_any m_changed;
    qint64 m_elapsed = 0;
    std::multiset<qint64> m_wakingTimes;
};

#pragma once

#include <QWPlatform/foundation/Clock.h>

#include <QTimeZone>

#include <chrono>

/// Stands still until the test advances it; starts on 2009-03-05 16:07:00 UTC.
class FakeClock : public platform::Clock
{
public:
    QDateTime now() const override { return start.addMSecs(m_elapsed / 1'000'000); }
    qint64 monotonicNanoseconds() const override { return m_elapsed; }

    void advance(std::chrono::nanoseconds time) { m_elapsed += time.count(); }

    QDateTime start{QDate(2009, 3, 5), QTime(16, 7), QTimeZone::utc()};

private:
    qint64 m_elapsed = 0;
};

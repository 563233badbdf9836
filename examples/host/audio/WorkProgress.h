#pragma once

#include <atomic>

namespace demo
{

/// What a worker tells the main thread while it works, and the other way round. Any thread.
class WorkProgress
{
public:
    /// From 0 to 1.
    double fraction() const { return m_fraction; }
    void setFraction(double fraction) { m_fraction = fraction; }

    /// The worker sees it within a few milliseconds and ends without a result.
    void cancel() { m_cancelled = true; }
    bool isCancelled() const { return m_cancelled; }

private:
    std::atomic<double> m_fraction = 0;
    std::atomic<bool> m_cancelled = false;
};

} // namespace demo

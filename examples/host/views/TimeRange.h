#pragma once

namespace demo
{

/// A stretch of time in a sound, in seconds.
struct TimeRange
{
    double begin = 0;
    double end = 0;

    double length() const { return end - begin; }
    bool isEmpty() const { return end <= begin; }
    bool contains(double seconds) const { return seconds >= begin && seconds <= end; }
    bool operator==(const TimeRange &) const = default;
};

} // namespace demo

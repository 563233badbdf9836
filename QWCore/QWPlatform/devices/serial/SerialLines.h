#pragma once

#include <QWPlatform/qwplatform_private.h>

#include <QString>

#include <cstddef>
#include <cstdint>
#include <span>

namespace platform
{

/// Raw serial lines. No call waits for the other side, drain() excepted.
///
/// A line is named by its descriptor, a number that is never 0 and never given twice: who still holds the number of a
/// line that was closed reaches nothing. Reading, writing and closing may meet on different threads.
class QWPLATFORM_SHARED_EXPORT SerialLines
{
public:
    struct Opening
    {
        int descriptor = 0; ///< 0 when the line could not be opened.
        int error = 0;      ///< The system's error number then.
        QString advice;     ///< A sentence for the log that says what to do about the error; may be empty.
    };

    virtual ~SerialLines();

    /// Opens @p path for this process alone, without making it the controlling terminal: no echo, no signals, eight
    /// bits, nothing translated, speed as it is, both directions empty. Any thread.
    virtual Opening open(const QString &path) = 0;

    /// Takes what is there, as far as it fits: its length; 0 or -1 when there is nothing, or no such line. Any thread.
    virtual std::ptrdiff_t read(int descriptor, std::span<std::uint8_t> bytes) = 0;

    /// Hands over @p bytes whole: their length, or -1 when the line is full, has gone, or never was; they are dropped
    /// then. What a line that fills up in the middle of them does not take goes first at the next write, so that
    /// whoever reads messages of a fixed length is never out of step. Any thread.
    virtual std::ptrdiff_t write(int descriptor, std::span<const std::uint8_t> bytes) = 0;

    /// Waits until everything was sent, but no longer than a second. Any thread.
    virtual void drain(int descriptor) = 0;

    /// From now on the number names nothing. Any thread.
    virtual void close(int descriptor) = 0;
};

} // namespace platform

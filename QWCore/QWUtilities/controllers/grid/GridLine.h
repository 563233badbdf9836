#pragma once

#include "GridProtocol.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <span>

namespace platform
{
class SerialLines;
}

namespace qw
{

/// The line to the grid that is connected, and the protocol spoken on it. Any thread. Without a grid it may be written
/// to as well, which reaches nothing.
class GridLine
{
public:
    /// @p lines outlives this.
    explicit GridLine(platform::SerialLines &lines);

    bool isOpen() const { return m_fileID != 0; }

    /// From now on this line is meant; the one before is not closed.
    void setDescriptor(int descriptor) { m_fileID = descriptor; }

    GridProtocol protocol() const { return m_use40hProtocol ? GridProtocol::FortyH : GridProtocol::Series; }
    void setProtocol(GridProtocol protocol) { m_use40hProtocol = protocol == GridProtocol::FortyH; }

    /// How many of @p bytes were there to read; 0 or less for none.
    std::ptrdiff_t read(std::span<std::uint8_t> bytes);

    /// In one write: what other threads send comes before or behind it whole. Whether it arrives is not looked at.
    void write(std::span<const std::uint8_t> bytes);
    void write(const GridMessage &message);

    /// Waits, not for ever, until everything was sent.
    void drain();
    void close();

private:
    platform::SerialLines &m_lines;
    std::atomic<int> m_fileID = 0; ///< Of the open line; 0: none is connected.
    std::atomic<bool> m_use40hProtocol = false;
};

} // namespace qw

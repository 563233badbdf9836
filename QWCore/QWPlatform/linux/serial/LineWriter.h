#pragma once

#include <cstddef>
#include <cstdint>
#include <mutex>
#include <span>
#include <vector>

namespace platform
{

/// Writes messages to a line whole or not at all. What a line that fills up in the middle of one does not take is kept
/// and goes before everything else. Any thread; whoever comes while another one writes waits for that call, which
/// itself waits for nobody.
class LineWriter
{
public:
    /// @p bytes to @p file, which is the line @p number; what another number left is forgotten. The length of @p bytes,
    /// or -1 when nothing of them was taken.
    std::ptrdiff_t write(int number, int file, std::span<const std::uint8_t> bytes);

    /// Sends what was kept. True when nothing is left.
    bool finish(int number, int file);

private:
    bool _sendRest(int number, int file);

    std::mutex m_mutex; ///< Guards the rest.
    int m_number = 0;
    std::vector<std::uint8_t> m_rest;
};

} // namespace platform

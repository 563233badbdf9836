#include "GridFrame.h"

#include <cmath>
#include <optional>

namespace qw
{

namespace
{
constexpr auto relaxed = std::memory_order_relaxed; // the bytes say nothing about anything else

/// None when no 32-bit number stands for @p value.
std::optional<std::int32_t> integerPart(float value)
{
    constexpr float limit = 2147483648.0f;
    if (!(std::fabs(value) < limit))
        return std::nullopt;
    return static_cast<std::int32_t>(value);
}

/// A bit of a byte of the frame; the byte may lie outside.
struct Place
{
    int byte = 0;
    std::uint8_t mask = 0;
};

Place placeOf(QWGridPosition position)
{
    const auto x = integerPart(position.x);
    const auto y = integerPart(position.y);
    if (!x || !y)
        return {};
    const int quadrant = (position.x >= 8.0f ? 1 : 0) + (position.y >= 8.0f ? 2 : 0);
    const int row = static_cast<std::int8_t>(*y) % 8; // of the sign of y: a row before the quadrant's first
    // One bit of 32, of which the byte keeps eight: columns 8 to 15 cannot be lit this way. Intended.
    const std::uint32_t bit = 1u << (static_cast<std::uint32_t>(*x) % 32);
    return {.byte = quadrant * 8 + row, .mask = static_cast<std::uint8_t>(bit)};
}
} // namespace

void GridFrame::setLED(bool on, QWGridPosition position)
{
    const auto [byte, mask] = placeOf(position);
    if (byte < 0)
        return;
    auto &bits = m_bytes[static_cast<std::size_t>(byte)];
    if (on)
        bits.fetch_or(mask, relaxed);
    else
        bits.fetch_and(static_cast<std::uint8_t>(~mask), relaxed);
}

bool GridFrame::led(QWGridPosition position) const
{
    const auto [byte, mask] = placeOf(position);
    return byte >= 0 && (m_bytes[static_cast<std::size_t>(byte)].load(relaxed) & mask);
}

void GridFrame::setRows(const std::uint8_t *rows, unsigned quadrant)
{
    if (quadrant >= quadrants)
        return;
    for (unsigned row = 0; row < bytesPerQuadrant; ++row)
        m_bytes[quadrant * bytesPerQuadrant + row].store(rows[row], relaxed);
}

GridRows GridFrame::rows(unsigned quadrant) const
{
    GridRows rows;
    for (unsigned i = 0; i < rows.size(); ++i)
        rows[i] = row(quadrant, i);
    return rows;
}

std::uint8_t GridFrame::row(unsigned quadrant, unsigned row) const
{
    return m_bytes[quadrant * bytesPerQuadrant + row].load(relaxed);
}

void GridFrame::clear()
{
    for (auto &byte : m_bytes)
        byte.store(0, relaxed);
}

} // namespace qw

#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace qw
{

/// The two wire protocols, byte for byte, as published for the 40h and for the series 64, 128 and 256.
enum class GridProtocol : bool
{
    Series,
    FortyH
};

/// What two bytes from a grid mean.
struct GridPress
{
    enum Kind : std::uint8_t
    {
        None,
        Down,
        Up
    };

    Kind kind = None;
    std::int8_t x = 0;  ///< Device column.
    std::uint8_t y = 0; ///< Device row.

    bool operator==(const GridPress &) const = default;
};

/// The upper four bits as a signed number, -8 to 7.
constexpr std::int8_t highNibble(std::uint8_t byte)
{
    return static_cast<std::int8_t>(static_cast<std::int8_t>(byte) >> 4);
}

constexpr GridPress::Kind gridPressKind(GridProtocol protocol, std::uint8_t first)
{
    const int high = highNibble(first);
    if (protocol == GridProtocol::FortyH) {
        if (high > 0)
            return GridPress::None; // of an analogue input
        return first & 0x0F ? GridPress::Down : GridPress::Up;
    }
    return high == 0 ? GridPress::Down : high == 1 ? GridPress::Up : GridPress::None;
}

constexpr GridPress decodeGridPress(GridProtocol protocol, std::uint8_t first, std::uint8_t second)
{
    // The column arrives as a signed nibble: 8 to 15 give x = -8 to -1. Intended.
    return {
        .kind = gridPressKind(protocol, first), .x = highNibble(second), .y = static_cast<std::uint8_t>(second & 0x0F)};
}

/// Bytes to send in one piece.
struct GridMessage
{
    std::array<std::uint8_t, 9> bytes{};
    std::size_t length = 0;

    bool operator==(const GridMessage &) const = default;
};

/// Bytes of the four quadrants in their messages; the 40h needs 16.
constexpr std::size_t gridLongestFrame = 36;

using GridRows = std::array<std::uint8_t, 8>; ///< Row 0 first; bit n is column n.

/// All LEDs off; series only.
constexpr GridMessage gridClearMessage()
{
    return {.bytes = {0x90}, .length = 1};
}

/// The 8 rows of a quadrant; series only.
constexpr GridMessage gridQuadrantMessage(unsigned quadrant, const GridRows &rows)
{
    GridMessage message{.bytes = {static_cast<std::uint8_t>(0x80 + quadrant)}, .length = 9};
    for (std::size_t row = 0; row < rows.size(); ++row)
        message.bytes[row + 1] = rows[row];
    return message;
}

/// A message of the 40h is a 16-bit value whose low byte goes first: the data byte precedes the command. Intended.
constexpr GridMessage gridWord(unsigned value)
{
    return {.bytes = {static_cast<std::uint8_t>(value), static_cast<std::uint8_t>(value >> 8)}, .length = 2};
}

/// One row of LEDs; 40h only.
constexpr GridMessage gridRowMessage(unsigned row, std::uint8_t bits)
{
    return gridWord(0x7000 + row * 0x100 + bits);
}

/// @p level 0 to 15.
constexpr GridMessage gridBrightnessMessage(GridProtocol protocol, unsigned level)
{
    if (protocol == GridProtocol::FortyH)
        return gridWord(0x3000 + level);
    return {.bytes = {static_cast<std::uint8_t>(0xA0 + level)}, .length = 1};
}

/// 0 to 15 for 0.0 to 1.0 and what lies beyond; what is no number gives 0.
constexpr unsigned gridBrightnessLevel(float intensity)
{
    if (!(intensity > 0))
        return 0;
    return static_cast<unsigned>((intensity < 1 ? intensity : 1.0f) * 15);
}

} // namespace qw

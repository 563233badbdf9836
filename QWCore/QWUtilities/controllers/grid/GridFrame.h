#pragma once

#include "GridProtocol.h"
#include "QWUtilities/controllers/QWGridPosition.h"

#include <array>
#include <atomic>
#include <cstdint>

namespace qw
{

/// Which LEDs are lit: four quadrants of 8 x 8, 0 and 1 above 2 and 3. Any thread; single bytes never tear, and changes
/// of two threads to one byte both count.
class GridFrame
{
public:
    static constexpr unsigned quadrants = 4;

    /// @p position is the device's. Changes nothing where no LED of the frame is meant.
    void setLED(bool on, QWGridPosition position);
    bool led(QWGridPosition position) const;

    /// A quadrant beyond the last one is left alone.
    void setRows(const std::uint8_t *rows, unsigned quadrant);
    GridRows rows(unsigned quadrant) const;
    std::uint8_t row(unsigned quadrant, unsigned row) const;

    void clear();

private:
    static constexpr unsigned bytesPerQuadrant = 8;

    std::array<std::atomic<std::uint8_t>, quadrants * bytesPerQuadrant> m_bytes{};
};

} // namespace qw

#pragma once

#include "QWUtilities/controllers/QWGridPosition.h"

#include <cstdint>

namespace qw
{

/// How positions of the device and of the application belong together.
struct GridMapping
{
    std::uint8_t orientation = 0; ///< Quarter turns; beyond 3 nothing is turned.
    std::int8_t origin = 0;       ///< 1 flips the vertical axis.
    std::uint32_t rows = 0;
    std::uint32_t columns = 0;

    /// Of the device to the application's.
    QWGridPosition transformed(QWGridPosition position) const;

    /// Of the application to the device's.
    QWGridPosition untransformed(QWGridPosition position) const;

private:
    // Without rows the last one is 4294967295. Intended: nothing is at that place.
    float _lastRow() const { return static_cast<float>(rows - 1); }
    float _lastColumn() const { return static_cast<float>(columns - 1); }

    // The flip counts rows, also after a quarter turn, when the vertical axis counts columns. Intended.
    QWGridPosition _flipped(QWGridPosition position) const;
};

} // namespace qw

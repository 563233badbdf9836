#pragma once

/// A place on a grid: x is the column, y the row. Whole numbers name buttons; nothing keeps a position inside the grid.
/// A plain value, open for good.
struct QWGridPosition
{
    float x = 0; ///< Column, from 0.
    float y = 0; ///< Row, from 0.

    /// Exact, as floats compare.
    bool operator==(const QWGridPosition &) const = default;
};

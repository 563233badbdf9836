#pragma once

/// A place on a grid: x is the column, y the row. Whole numbers name buttons; nothing keeps a position inside the grid.
struct QWGridPosition
{
    float x = 0;
    float y = 0;

    bool operator==(const QWGridPosition &) const = default;
};

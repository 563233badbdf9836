#pragma once

#include <QColor>

/// A colour at a place of a gradient. A value that hosts fill in, so it stays open.
struct QWGradientStop
{
    QColor color;          ///< May be translucent.
    double position = 0;   ///< 0 at the start to 1 at the end.
    double midpoint = 0.5; ///< Where, from here (0) to the next stop (1), the two colours are mixed half and half.

    /// True when all three are equal.
    bool operator==(const QWGradientStop &other) const = default;
};

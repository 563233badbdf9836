#pragma once

#include "QWGradientStop.h"

#include <QWBase/qwbase_export.h>

#include <QLinearGradient>

#include <vector>

class QPainter;
class QPainterPath;

/// A run of colours that fills a shape along a straight line. Angles are degrees, counter-clockwise as one sees it: at
/// 0 the gradient starts at the left edge, at 90 at the bottom edge and ends at the top. A value that hosts copy, so it
/// stays open. Any one thread.
class QWBASE_EXPORT QWGradient
{
public:
    /// From @p start at 0 to @p end at 1, mixed half and half in the middle.
    QWGradient(const QColor &start, const QColor &end);

    /// In order of position; never fewer than two.
    const std::vector<QWGradientStop> &stops() const { return m_stops; }

    /// Adds a stop; its position is brought into 0 to 1. After those at the same position.
    void addStop(const QWGradientStop &stop);

    /// Of the stop at @p index, which must be one of stops(); kept within 0 to 1. The last stop's has no effect.
    void setMidpointOfStop(int index, double midpoint);

    /// The colour at @p position, 0 to 1.
    QColor colorAt(double position) const;

    /// For painting into @p rect: the first and last colour just reach its outermost corners.
    QLinearGradient linearGradient(const QRectF &rect, double angle) const;

    /// Fills @p path; the gradient spans its bounds.
    void drawInPathAngle(QPainter &painter, const QPainterPath &path, double angle) const;

    /// Fills @p rect, which the gradient spans.
    void drawInRectAngle(QPainter &painter, const QRectF &rect, double angle) const;

private:
    QGradientStops _colorStops() const;

    std::vector<QWGradientStop> m_stops;
};

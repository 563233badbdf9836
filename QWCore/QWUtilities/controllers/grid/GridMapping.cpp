#include "GridMapping.h"

namespace qw
{

QWGridPosition GridMapping::transformed(QWGridPosition position) const
{
    const auto [x, y] = position;
    switch (orientation) {
    case 1:
        return _flipped({_lastRow() - y, x});
    case 2:
        return _flipped({_lastColumn() - x, _lastRow() - y});
    case 3:
        return _flipped({y, _lastColumn() - x});
    default:
        return _flipped({x, y});
    }
}

QWGridPosition GridMapping::untransformed(QWGridPosition position) const
{
    const auto [x, y] = _flipped(position);
    switch (orientation) {
    case 1:
        return {y, _lastRow() - x};
    case 2:
        return {_lastColumn() - x, _lastRow() - y};
    case 3:
        return {_lastColumn() - y, x};
    default:
        return {x, y};
    }
}

QWGridPosition GridMapping::_flipped(QWGridPosition position) const
{
    return origin == 1 ? QWGridPosition{position.x, _lastRow() - position.y} : position;
}

} // namespace qw

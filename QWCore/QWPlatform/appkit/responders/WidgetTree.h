#pragma once

#include <QWidget>

namespace platform
{

/// Whether @p inner is @p outer or lies somewhere below it, in windows and menus of its own too;
/// QWidget::isAncestorOf() stops at these.
inline bool isWithin(const QWidget *inner, const QWidget &outer)
{
    while (inner && inner != &outer)
        inner = inner->parentWidget();
    return inner;
}

} // namespace platform

#pragma once

#include <QWBase/qwbase_export.h>

#include <QCollator>
#include <QString>

namespace platform
{
class MenuItem;
}

class QMenu;

/// Menus in title order: as the user's language sorts, upper and lower case alike, numbers by value ("Echo 2" before
/// "Echo 10"). Main thread.
namespace QWMenuSorting
{

/// Below, equal to or above 0; the one order that all sorted menus have.
QWBASE_EXPORT int compareTitles(const QString &left, const QString &right);

/// Keys that compare as compareTitles() does, many times as fast.
QWBASE_EXPORT QCollatorSortKey sortKey(const QString &title);

/// New item at its place in @p menu, which is in title order; after those that compare equal. Owned by the menu,
/// which is told of each item: not for thousands.
QWBASE_EXPORT platform::MenuItem *addItemSortedWithTitle(QMenu &menu, const QString &title);

} // namespace QWMenuSorting

#include "AccessibleCell.h"

#include <QAbstractItemView>
#include <QTimer>

namespace platform
{

void tellOfCell(QAbstractItemView &view, const QModelIndex &index, QAccessible::Event what)
{
    if (!QAccessible::isActive() || !index.isValid())
        return;
    const QPoint place = view.viewport()->mapToGlobal(view.visualRect(index).center());
    QAccessibleInterface *const list = QAccessible::queryAccessibleInterface(&view);
    if (QAccessibleInterface *const cell = list ? list->childAt(place.x(), place.y()) : nullptr) {
        QAccessibleEvent event(cell, what);
        QAccessible::updateAccessibility(&event);
    }
}

/// Qt tells of the list first, after the list itself has heard of it.
void tellOfFocusedCell(QAbstractItemView &view)
{
    QTimer::singleShot(0, &view, [&view] {
        if (view.hasFocus())
            tellOfCell(view, view.currentIndex(), QAccessible::Focus);
    });
}

} // namespace platform

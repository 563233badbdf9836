#pragma once

#include <QWPlatform/qwplatform_private.h>

#include <QAccessible>

class QAbstractItemView;
class QModelIndex;

namespace platform
{

/// Tells a screen reader @p what happened to a cell that shows in @p view; nothing for no index, or when nobody
/// listens. Qt itself tells a list's cells neither that the list got the focus nor that they changed. Main thread.
QWPLATFORM_SHARED_EXPORT void tellOfCell(QAbstractItemView &view, const QModelIndex &index, QAccessible::Event what);

/// The same of the focus that is on its way to @p view: its current cell has it, once the event loop runs.
QWPLATFORM_SHARED_EXPORT void tellOfFocusedCell(QAbstractItemView &view);

} // namespace platform

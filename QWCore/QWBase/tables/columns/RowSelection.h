#pragma once

#include <QItemSelection>
#include <QList>

namespace qw
{

/// The whole @p rows, those one after another as one range, so that many rows are few ranges. Rows that there are not
/// are left out.
QItemSelection selectionOfRows(const QAbstractItemModel &model, QList<int> rows);

/// Ascending, each once.
QList<int> rowsOfSelection(const QItemSelection &selection);

} // namespace qw

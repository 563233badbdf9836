#include "RowSelection.h"

#include <algorithm>

namespace qw
{

namespace
{
void sortOnce(QList<int> &rows)
{
    std::sort(rows.begin(), rows.end());
    rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
}
} // namespace

QItemSelection selectionOfRows(const QAbstractItemModel &model, QList<int> rows)
{
    sortOnce(rows);
    rows.removeIf([&](int row) { return row < 0 || row >= model.rowCount(); });
    QItemSelection selection;
    const int lastColumn = model.columnCount() - 1;
    for (auto first = rows.cbegin(); first != rows.cend() && lastColumn >= 0;) {
        auto last = first;
        while (last + 1 != rows.cend() && *(last + 1) == *last + 1)
            ++last;
        selection.append(QItemSelectionRange(model.index(*first, 0), model.index(*last, lastColumn)));
        first = last + 1;
    }
    return selection;
}

QList<int> rowsOfSelection(const QItemSelection &selection)
{
    QList<int> rows;
    for (const QItemSelectionRange &range : selection)
        for (int row = range.top(); row <= range.bottom(); ++row)
            rows.append(row);
    sortOnce(rows);
    return rows;
}

} // namespace qw

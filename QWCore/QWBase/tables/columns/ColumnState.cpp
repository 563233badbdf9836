#include "ColumnState.h"

#include <QWPlatform/foundation/lists/PropertyListValues.h>

#include <algorithm>
#include <cmath>

namespace qw
{

namespace
{
constexpr auto identifierKey = "identifier";
constexpr auto widthKey = "width";

double widthIn(const QVariant &value)
{
    const double width = platform::isNumber(value) ? value.toDouble() : 0;
    return width > 0 && std::isfinite(width) ? std::clamp(width, narrowestColumn, widestColumn) : 0;
}

bool isNamed(const std::vector<StoredColumn> &columns, const QString &identifier)
{
    return std::any_of(columns.begin(), columns.end(), [&](const auto &c) { return c.identifier == identifier; });
}
} // namespace

QVariantList stateOf(const std::vector<QWTableColumn> &columns)
{
    QVariantList state;
    for (const QWTableColumn &column : columns)
        state.append(QVariantMap{{identifierKey, column.identifier}, {widthKey, column.width}});
    return state;
}

std::vector<StoredColumn> storedColumns(const QVariant &state)
{
    std::vector<StoredColumn> columns;
    if (state.typeId() != QMetaType::QVariantList)
        return columns;
    const QVariantList entries = state.toList();
    for (const QVariant &entry : entries) {
        const QVariantMap values = entry.toMap();
        const QVariant identifier = values.value(identifierKey);
        if (identifier.typeId() == QMetaType::QString && !isNamed(columns, identifier.toString()))
            columns.push_back({identifier.toString(), widthIn(values.value(widthKey))});
    }
    return columns;
}

} // namespace qw

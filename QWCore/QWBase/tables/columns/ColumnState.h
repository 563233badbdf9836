#pragma once

#include "QWBase/tables/QWTableColumn.h"
#include <QWBase/qwbase_private.h>

#include <QVariant>

#include <vector>

namespace qw
{

/// A column as a stored state tells of it.
struct StoredColumn
{
    QString identifier;
    double width; ///< In points, within narrowestColumn and widestColumn.
};

constexpr double narrowestColumn = 16; ///< Points: wide enough to be taken hold of.
constexpr double widestColumn = 4000;  ///< Points.

/// As a property list: an array of dictionaries, "identifier" and "width", in the order in which columns show.
QVariantList stateOf(const std::vector<QWTableColumn> &columns);

/// What can be used of a list from outside: entries without an identifier are passed over, so is what names a column
/// again; widths that are no number are 0, others brought into their range.
std::vector<StoredColumn> storedColumns(const QVariant &state);

} // namespace qw

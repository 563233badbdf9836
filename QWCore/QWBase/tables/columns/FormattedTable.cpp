#include "FormattedTable.h"

#include <QWPlatform/foundation/Localization.h>

namespace qw
{

void FormattedTable::setColumns(const std::vector<QWTableColumn> &columns)
{
    m_columns = columns;
    _placeColumns();
    if (!m_identifiers.isEmpty())
        Q_EMIT headerDataChanged(Qt::Horizontal, 0, static_cast<int>(m_identifiers.size()) - 1);
}

bool FormattedTable::readIdentifiers()
{
    QStringList identifiers;
    for (int section = 0; sourceModel() && section < sourceModel()->columnCount(); ++section)
        identifiers.append(
            sourceModel()->headerData(section, Qt::Horizontal, QWTableColumn::IdentifierRole).toString());
    if (identifiers == m_identifiers)
        return false;
    m_identifiers = std::move(identifiers);
    _placeColumns();
    return true;
}

int FormattedTable::sectionOf(const QString &identifier) const
{
    return identifier.isEmpty() ? -1 : static_cast<int>(m_identifiers.indexOf(identifier));
}

QString FormattedTable::identifierOf(int section) const
{
    return m_identifiers.value(section);
}

void FormattedTable::setSortColumn(const QString &identifier, Qt::SortOrder order)
{
    m_sortColumn = identifier;
    m_sortOrder = order;
}

QVariant FormattedTable::data(const QModelIndex &index, int role) const
{
    const auto section = static_cast<std::size_t>(index.column());
    const QWTableColumn *const column = index.isValid() && section < m_columnAt.size() ? m_columnAt[section] : nullptr;
    return column ? _shownData(*column, index, role) : QIdentityProxyModel::data(index, role);
}

QVariant FormattedTable::_shownData(const QWTableColumn &column, const QModelIndex &index, int role) const
{
    if (role == Qt::TextAlignmentRole)
        return (column.alignment | Qt::AlignVCenter).toInt();
    const QVariant value = QIdentityProxyModel::data(index, role);
    return role == Qt::DisplayRole && column.formatter ? column.formatter->stringForObjectValue(value) : value;
}

QVariant FormattedTable::headerData(int section, Qt::Orientation orientation, int role) const
{
    const auto place = static_cast<std::size_t>(section);
    const bool isColumn = orientation == Qt::Horizontal && section >= 0 && place < m_columnAt.size();
    const QWTableColumn *const column = isColumn ? m_columnAt[place] : nullptr;
    if (column && role == Qt::DisplayRole)
        return column->title;
    if (column && role == Qt::AccessibleTextRole)
        return _spokenTitle(*column);
    if (column && role == Qt::TextAlignmentRole)
        return (column->alignment | Qt::AlignVCenter).toInt();
    return QIdentityProxyModel::headerData(section, orientation, role);
}

QString FormattedTable::_spokenTitle(const QWTableColumn &column) const
{
    if (column.identifier != m_sortColumn)
        return column.title;
    const bool rises = m_sortOrder == Qt::AscendingOrder;
    return platform::formatted(platform::localized(rises ? "%@, sorted ascending" : "%@, sorted descending"),
                               {column.title});
}

void FormattedTable::_placeColumns()
{
    m_columnAt.assign(static_cast<std::size_t>(m_identifiers.size()), nullptr);
    for (const QWTableColumn &column : m_columns)
        if (const int section = sectionOf(column.identifier); section >= 0)
            m_columnAt[static_cast<std::size_t>(section)] = &column;
}

} // namespace qw

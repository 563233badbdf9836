#pragma once

#include "QWBase/tables/QWTableColumn.h"

#include <QIdentityProxyModel>

#include <vector>

namespace qw
{

/// A model as a table shows it: headers and texts are those of the table's columns, so that a screen reader says what
/// the eye sees. Rows and columns are the model's own.
class FormattedTable : public QIdentityProxyModel
{
    Q_OBJECT

public:
    using QIdentityProxyModel::QIdentityProxyModel;

    /// Which columns the table shows, in any order.
    void setColumns(const std::vector<QWTableColumn> &columns);

    /// Looks again which of the model's columns has which identifier; true when that has changed.
    bool readIdentifiers();

    /// The model's column; -1 when it has none of this name.
    int sectionOf(const QString &identifier) const;
    QString identifierOf(int section) const; ///< "" when the model gives none.

    /// Told by the header's name to a screen reader; "" for none.
    void setSortColumn(const QString &identifier, Qt::SortOrder order);

    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    void _placeColumns();
    QVariant _shownData(const QWTableColumn &column, const QModelIndex &index, int role) const;
    QString _spokenTitle(const QWTableColumn &column) const;

    QStringList m_identifiers; ///< By section.
    std::vector<QWTableColumn> m_columns;
    std::vector<const QWTableColumn *> m_columnAt; ///< By section; null where the table has none.
    QString m_sortColumn;
    Qt::SortOrder m_sortOrder = Qt::AscendingOrder;
};

} // namespace qw

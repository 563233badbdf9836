#pragma once

#include <QWBase/tables/QWTableView.h>
#include <QWBase/tables/QWTimeFormatter.h>

#include <QAbstractTableModel>

/// Takes by title, length, size and note, as many as a test wants; take n is n seconds long.
class TakesModel : public QAbstractTableModel
{
public:
    explicit TakesModel(int count)
        : m_count(count)
    {
    }

    void setCount(int count)
    {
        beginResetModel();
        m_count = count;
        endResetModel();
    }

    int rowCount(const QModelIndex &parent = {}) const override { return parent.isValid() ? 0 : m_count; }
    int columnCount(const QModelIndex &parent = {}) const override
    {
        return parent.isValid() ? 0 : static_cast<int>(identifiers.size());
    }

    QVariant data(const QModelIndex &index, int role) const override
    {
        if (role != Qt::DisplayRole)
            return {};
        const QString identifier = identifiers[index.column()];
        if (identifier == "length")
            return double(index.row());
        return QString(identifier + ' ' + QString::number(index.row()));
    }

    QVariant headerData(int section, Qt::Orientation orientation, int role) const override
    {
        const bool asksForIdentifier = orientation == Qt::Horizontal && role == QWTableColumn::IdentifierRole;
        return asksForIdentifier ? QVariant(identifiers.value(section)) : QVariant();
    }

    QStringList identifiers{"note", "size", "length", "title"};

private:
    int m_count;
};

/// Knows title, length, size and note; a title always shows, the rest is in the corner's menu.
class TakesTable : public QWTableView
{
public:
    explicit TakesTable(QWidget *parent = nullptr)
        : QWTableView(parent)
    {
        addCornerMenuItemForColumnIdentifier("Length & More", "length");
        addCornerMenuItemForColumnIdentifier("Size", "size");
        addCornerMenuItemForColumnIdentifier("Note", "note");
        addTableColumn(tableColumnForIdentifierWidth("title", 150));
        addTableColumn(tableColumnForIdentifierWidth("length", 60));
    }

    QWTableColumn tableColumnForIdentifierWidth(const QString &identifier, double width) const override
    {
        if (identifier == "length")
            return {identifier, "Length", std::make_shared<QWTimeFormatter>(), width, Qt::AlignRight};
        if (QStringList{"title", "size", "note"}.contains(identifier))
            return {identifier, identifier.left(1).toUpper() + identifier.mid(1), nullptr, width};
        return {};
    }

    QStringList shown() const
    {
        QStringList identifiers;
        const QList<QWTableColumn> columns = tableColumns();
        for (const QWTableColumn &column : columns)
            identifiers.append(column.identifier);
        return identifiers;
    }
};

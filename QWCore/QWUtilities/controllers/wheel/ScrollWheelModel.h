#pragma once

#include "ScrollWheelBinding.h"
#include "ScrollWheelColumns.h"

#include <QAbstractTableModel>
#include <QIcon>

#include <vector>

class QMenu;

namespace qw
{

/// The bindings as a table: a row each, the columns of scrollWheelColumns. Edits go into the list at once.
class ScrollWheelModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    /// None of these is owned. @p axes and @p actions are the menus of the pop-up cells.
    ScrollWheelModel(std::vector<ScrollWheelBinding> &bindings, QMenu &axes, QMenu &actions);

    /// Shown in the header for "reverse", which has no room for its name.
    void setReverseImage(const QIcon &image) { m_reverseImage = image; }

    void append(const ScrollWheelBinding &binding);
    void removeAt(int row);

    /// The menu of a pop-up column; null for the others.
    QMenu *menuOf(int column) const;

    /// The index of the chosen item of a pop-up, or whether a box is checked; nothing outside the table.
    QVariant objectValue(const QString &identifier, int row) const;
    void setObjectValue(const QVariant &value, const QString &identifier, int row);

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role = Qt::EditRole) override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;

private:
    QVariant _value(const ScrollWheelColumn &column, const ScrollWheelBinding &binding) const;
    void _setValue(const ScrollWheelColumn &column, ScrollWheelBinding &binding, const QVariant &value);
    QString _popUpTitle(const QModelIndex &index) const;
    QString _spokenText(const QModelIndex &index) const;

    std::vector<ScrollWheelBinding> &m_bindings;
    QMenu &m_axes;
    QMenu &m_actions;
    QIcon m_reverseImage;
};

} // namespace qw

#include "ScrollWheelModel.h"

#include <QWPlatform/appkit/MenuItem.h>
#include <QWPlatform/foundation/Localization.h>

#include <QMenu>

#include <algorithm>
#include <string_view>

namespace qw
{

using platform::localized;
using platform::MenuItem;

namespace
{
constexpr std::string_view axis = "axis";
constexpr std::string_view action = "action";
constexpr std::string_view reverse = "reverse";

int columnWithIdentifier(const QString &identifier)
{
    const auto &columns = scrollWheelColumns;
    const auto found = std::find_if(columns.begin(), columns.end(), [&](const ScrollWheelColumn &c) {
        return identifier == QLatin1String(c.identifier);
    });
    return found == columns.end() ? -1 : static_cast<int>(found - columns.begin());
}

const ScrollWheelColumn &columnAt(int column)
{
    return scrollWheelColumns[static_cast<std::size_t>(column)];
}

MenuItem *itemAt(const QMenu &menu, int index)
{
    return qobject_cast<MenuItem *>(menu.actions().value(index));
}

/// The first item that carries @p name, or -1.
int indexOfAction(const QMenu &menu, const QString &name)
{
    const QList<QAction *> items = menu.actions();
    for (int i = 0; i < items.size(); ++i) {
        if (itemAt(menu, i)->representedObject().toString() == name)
            return i;
    }
    return -1;
}
} // namespace

ScrollWheelModel::ScrollWheelModel(std::vector<ScrollWheelBinding> &bindings, QMenu &axes, QMenu &actions)
    : m_bindings(bindings)
    , m_axes(axes)
    , m_actions(actions)
{
}

void ScrollWheelModel::append(const ScrollWheelBinding &binding)
{
    beginInsertRows({}, rowCount(), rowCount());
    m_bindings.push_back(binding);
    endInsertRows();
}

void ScrollWheelModel::removeAt(int row)
{
    beginRemoveRows({}, row, row);
    m_bindings.erase(m_bindings.begin() + row);
    endRemoveRows();
}

QMenu *ScrollWheelModel::menuOf(int column) const
{
    if (columnAt(column).kind != ScrollWheelColumn::PopUp)
        return nullptr;
    return columnAt(column).identifier == axis ? &m_axes : &m_actions;
}

QVariant ScrollWheelModel::_value(const ScrollWheelColumn &column, const ScrollWheelBinding &binding) const
{
    if (column.modifier != 0)
        return (binding.modifiers() & column.modifier) != 0;
    if (column.identifier == axis)
        return binding.isVertical() ? 1 : 0;
    if (column.identifier == action)
        return indexOfAction(m_actions, binding.action().name());
    return binding.isReversed();
}

void ScrollWheelModel::_setValue(const ScrollWheelColumn &column, ScrollWheelBinding &binding, const QVariant &value)
{
    if (column.modifier != 0) // each click toggles, whatever the box says
        return binding.setModifiers(binding.modifiers() ^ column.modifier);
    if (column.identifier == axis)
        return binding.setVertical(value.toInt() != 0);
    if (column.identifier == reverse)
        return binding.setReversed(value.toBool());
    if (const MenuItem *const item = itemAt(m_actions, value.toInt()))
        binding.setAction(item->representedObject().toString());
}

// tableView:objectValueForTableColumn:row:
QVariant ScrollWheelModel::objectValue(const QString &identifier, int row) const
{
    const QModelIndex cell = index(row, columnWithIdentifier(identifier));
    return cell.isValid() ? data(cell, Qt::EditRole) : QVariant();
}

// tableView:setObjectValue:forTableColumn:row:
void ScrollWheelModel::setObjectValue(const QVariant &value, const QString &identifier, int row)
{
    const QModelIndex cell = index(row, columnWithIdentifier(identifier));
    if (cell.isValid())
        setData(cell, value);
}

// numberOfRowsInTableView:
int ScrollWheelModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_bindings.size());
}

int ScrollWheelModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(scrollWheelColumns.size());
}

QString ScrollWheelModel::_popUpTitle(const QModelIndex &index) const
{
    const QMenu *const menu = menuOf(index.column());
    const MenuItem *const item = menu ? itemAt(*menu, data(index, Qt::EditRole).toInt()) : nullptr;
    return item ? item->title() : QString();
}

/// The names of the modifiers say nothing without their column.
QString ScrollWheelModel::_spokenText(const QModelIndex &index) const
{
    const QString title = localized(columnAt(index.column()).title);
    if (menuOf(index.column()))
        return title + ": " + _popUpTitle(index);
    return title + ": " + (data(index, Qt::EditRole).toBool() ? localized("on") : localized("off"));
}

QVariant ScrollWheelModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const ScrollWheelColumn &column = columnAt(index.column());
    switch (role) {
    case Qt::EditRole:
        return _value(column, m_bindings[static_cast<std::size_t>(index.row())]);
    case Qt::DisplayRole:
    case Qt::ToolTipRole:
        return menuOf(index.column()) ? _popUpTitle(index) : QVariant();
    case Qt::AccessibleTextRole:
        return _spokenText(index);
    case Qt::CheckStateRole:
        if (column.kind == ScrollWheelColumn::CheckBox)
            return data(index, Qt::EditRole).toBool() ? Qt::Checked : Qt::Unchecked;
        return {};
    default:
        return {};
    }
}

bool ScrollWheelModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    const bool editable = role == Qt::EditRole || role == Qt::CheckStateRole;
    if (!editable || !checkIndex(index, CheckIndexOption::IndexIsValid))
        return false;
    _setValue(columnAt(index.column()), m_bindings[static_cast<std::size_t>(index.row())], value);
    Q_EMIT dataChanged(index, index);
    return true;
}

QVariant ScrollWheelModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || section < 0 || section >= columnCount())
        return {};
    const ScrollWheelColumn &column = columnAt(section);
    const bool isPicture = column.identifier == reverse && !m_reverseImage.isNull();
    switch (role) {
    case Qt::DisplayRole:
        if (column.kind == ScrollWheelColumn::PopUp) // in line with the titles below it
            return localized(column.title).prepend(QChar(0x2002));
        return isPicture ? QString() : localized(column.title);
    case Qt::DecorationRole:
        return isPicture ? m_reverseImage : QVariant();
    case Qt::ToolTipRole:
    case Qt::AccessibleTextRole:
        return localized(column.title);
    case Qt::TextAlignmentRole:
        return QVariant::fromValue(column.kind == ScrollWheelColumn::CheckBox ? Qt::AlignCenter
                                                                              : Qt::AlignLeft | Qt::AlignVCenter);
    default:
        return {};
    }
}

Qt::ItemFlags ScrollWheelModel::flags(const QModelIndex &index) const
{
    const Qt::ItemFlags usual = Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren;
    if (!index.isValid() || menuOf(index.column()))
        return usual;
    return usual | Qt::ItemIsUserCheckable;
}

} // namespace qw

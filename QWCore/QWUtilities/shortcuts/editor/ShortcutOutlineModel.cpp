#include "ShortcutOutlineModel.h"

#include "Keycaps.h"
#include "QWUtilities/shortcuts/menus/MainMenuItems.h"

#include <QWPlatform/foundation/Localization.h>

#include <QBrush>
#include <QFont>
#include <QGuiApplication>
#include <QPalette>

namespace qw
{

using platform::formatted;
using platform::localized;

namespace
{
constexpr quintptr groupId = 0; ///< Internal id of a group's row; a shortcut's is the group's row + 1.

Qt::CheckState checkState(int enabled)
{
    return enabled < 0 ? Qt::PartiallyChecked : enabled ? Qt::Checked : Qt::Unchecked;
}

QString spokenState(int enabled)
{
    return localized(enabled < 0 ? "partly on" : enabled ? "on" : "off");
}

QString titleOf(const QWShortcutGroup &group)
{
    return formatted(localized("%@%@"), {group.name(), group.isMenu() ? localized(" Menu") : QString()});
}

/// A row is told by its first cell, since that is where the cursor is.
QString spokenRow(const QWShortcut &shortcut)
{
    const QString key = shortcut.key().isClear() ? localized("no shortcut") : Keycaps::spokenText(shortcut.key());
    return QStringList{shortcut.name(), key, spokenState(shortcut.enabled())}.join(", ");
}

QBrush inkOfKey(bool enabled)
{
    return QGuiApplication::palette().color(enabled ? QPalette::Active : QPalette::Disabled, QPalette::Text);
}

QFont boldFont()
{
    QFont font;
    font.setBold(true);
    return font;
}
} // namespace

ShortcutOutlineModel::ShortcutOutlineModel(QObject *parent)
    : QAbstractItemModel(parent)
{
}

ShortcutOutlineModel::~ShortcutOutlineModel() = default;

void ShortcutOutlineModel::setGroups(const Groups &groups)
{
    std::vector<Row> rows;
    for (const auto &group : groups)
        rows.push_back({group, group->shortcuts()});
    if (rows == m_rows)
        return _showAnew(0, rowCount() - 1);
    beginResetModel();
    m_rows = std::move(rows);
    endResetModel();
}

std::shared_ptr<QWShortcut> ShortcutOutlineModel::shortcutAt(const QModelIndex &index) const
{
    if (!index.isValid() || index.internalId() == groupId)
        return nullptr;
    return m_rows[index.internalId() - 1].shortcuts[std::size_t(index.row())];
}

std::shared_ptr<QWShortcutGroup> ShortcutOutlineModel::groupAt(const QModelIndex &index) const
{
    return index.isValid() && index.internalId() == groupId ? m_rows[std::size_t(index.row())].group : nullptr;
}

void ShortcutOutlineModel::setEnabledAt(const QModelIndex &index, bool enabled)
{
    const MainMenuItems::Batch batch;
    if (const auto shortcut = shortcutAt(index))
        shortcut->setEnabled(enabled);
    else if (const auto group = groupAt(index))
        group->setEnabled(enabled);
    else
        return;
    const int groupRow = index.parent().isValid() ? index.parent().row() : index.row();
    _showAnew(groupRow, groupRow);
}

QModelIndex ShortcutOutlineModel::index(int row, int column, const QModelIndex &parent) const
{
    if (!hasIndex(row, column, parent))
        return {};
    return createIndex(row, column, parent.isValid() ? quintptr(parent.row()) + 1 : groupId);
}

QModelIndex ShortcutOutlineModel::parent(const QModelIndex &index) const
{
    if (!index.isValid() || index.internalId() == groupId)
        return {};
    return createIndex(int(index.internalId() - 1), 0, groupId);
}

int ShortcutOutlineModel::rowCount(const QModelIndex &parent) const
{
    if (!parent.isValid())
        return int(m_rows.size());
    const bool isGroup = parent.internalId() == groupId && parent.column() == 0;
    return isGroup ? int(m_rows[std::size_t(parent.row())].shortcuts.size()) : 0;
}

int ShortcutOutlineModel::columnCount(const QModelIndex &) const
{
    return ColumnCount;
}

// outlineView:objectValueForTableColumn:byItem:
QVariant ShortcutOutlineModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    if (role == Qt::TextAlignmentRole && index.column() == Shortcut)
        return QVariant(Qt::AlignRight | Qt::AlignVCenter);
    if (const auto shortcut = shortcutAt(index))
        return _shortcutData(*shortcut, index.column(), role);
    return _groupData(*groupAt(index), index.column(), role);
}

// outlineView:setObjectValue:forTableColumn:byItem:
bool ShortcutOutlineModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (!index.isValid() || index.column() != Enabled || role != Qt::CheckStateRole)
        return false;
    setEnabledAt(index, value.toInt() != Qt::Unchecked);
    return true;
}

Qt::ItemFlags ShortcutOutlineModel::flags(const QModelIndex &index) const
{
    if (!index.isValid())
        return Qt::NoItemFlags;
    Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    flags.setFlag(Qt::ItemIsUserCheckable, index.column() == Enabled);
    flags.setFlag(Qt::ItemNeverHasChildren, index.internalId() != groupId);
    return flags;
}

QVariant ShortcutOutlineModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    static constexpr std::array titles{"Name", "Enabled", "Shortcut"}; // by Column
    const bool isTitle = orientation == Qt::Horizontal && role == Qt::DisplayRole;
    return isTitle && section >= 0 && section < ColumnCount ? localized(titles[std::size_t(section)]) : QVariant();
}

void ShortcutOutlineModel::_showAnew(int firstGroup, int lastGroup)
{
    if (firstGroup > lastGroup)
        return;
    Q_EMIT dataChanged(index(firstGroup, 0), index(lastGroup, ColumnCount - 1));
    for (int row = firstGroup; row <= lastGroup; ++row) {
        const QModelIndex group = index(row, 0);
        if (const int count = rowCount(group))
            Q_EMIT dataChanged(index(0, 0, group), index(count - 1, ColumnCount - 1, group));
    }
}

QVariant ShortcutOutlineModel::_groupData(const QWShortcutGroup &group, int column, int role) const
{
    if (column == Enabled && role == Qt::CheckStateRole)
        return checkState(group.enabled());
    if (column == Enabled && role == Qt::AccessibleTextRole)
        return spokenState(group.enabled());
    if (column != Name)
        return {};
    if (role == Qt::AccessibleTextRole)
        return QString(titleOf(group) + ", " + spokenState(group.enabled()));
    if (role == Qt::FontRole)
        return boldFont();
    return role == Qt::DisplayRole ? titleOf(group) : QVariant();
}

QVariant ShortcutOutlineModel::_shortcutData(const QWShortcut &shortcut, int column, int role) const
{
    switch (role) {
    case Qt::DisplayRole:
        return column == Name ? shortcut.name() : column == Shortcut ? shortcut.key().displayString() : QVariant();
    case Qt::CheckStateRole:
        return column == Enabled ? checkState(shortcut.enabled()) : QVariant();
    case Qt::ForegroundRole:
        return column == Shortcut ? inkOfKey(shortcut.enabled()) : QVariant();
    case Qt::AccessibleTextRole:
        return column == Name      ? spokenRow(shortcut)
               : column == Enabled ? spokenState(shortcut.enabled())
                                   : Keycaps::spokenText(shortcut.key());
    case Qt::ToolTipRole:
        return column == Name ? shortcut.name() : column == Shortcut ? Keycaps::spokenText(shortcut.key()) : QVariant();
    case KeycapsRole:
        return column == Shortcut ? Keycaps::textsOf(shortcut.key()) : QVariant();
    default:
        return {};
    }
}

} // namespace qw

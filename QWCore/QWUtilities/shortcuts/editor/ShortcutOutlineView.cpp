#include "ShortcutOutlineView.h"

#include "KeycapDelegate.h"
#include "ShortcutOutlineModel.h"

#include <QWPlatform/appkit/windows/AccessibleCell.h>

#include <QContextMenuEvent>
#include <QHeaderView>
#include <QKeyEvent>
#include <QPainter>
#include <QScrollBar>

#include <array>

namespace qw
{

using Column = ShortcutOutlineModel::Column;

namespace
{
constexpr int gap = 8;

struct KeyRequest
{
    int key;
    void (ShortcutOutlineView::*signal)(const QModelIndex &);
};

constexpr std::array keyRequests{
    KeyRequest{Qt::Key_Return, &ShortcutOutlineView::editRequested},
    KeyRequest{Qt::Key_Enter, &ShortcutOutlineView::editRequested},
    KeyRequest{Qt::Key_Space, &ShortcutOutlineView::toggleRequested},
    KeyRequest{Qt::Key_Delete, &ShortcutOutlineView::clearRequested},
    KeyRequest{Qt::Key_Backspace, &ShortcutOutlineView::clearRequested},
};

QString nameAt(const QModelIndex &index)
{
    return index.siblingAtColumn(Column::Name).data().toString();
}

QStringList namesDownTo(QModelIndex index)
{
    QStringList names;
    for (; index.isValid(); index = index.parent())
        names.prepend(nameAt(index));
    return names;
}
} // namespace

ShortcutOutlineView::ShortcutOutlineView(QWidget *parent)
    : QTreeView(parent)
{
    setItemDelegate(new KeycapDelegate(this));
    setUniformRowHeights(true);
    setAllColumnsShowFocus(true);
    setHeaderHidden(true);
    setEditTriggers(NoEditTriggers);
    setTreePosition(Column::Name);
    setTextElideMode(Qt::ElideMiddle); // items of one submenu differ at their ends
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
}

ShortcutOutlineView::~ShortcutOutlineView() = default;

void ShortcutOutlineView::setModel(QAbstractItemModel *model)
{
    QTreeView::setModel(model);
    _arrangeColumns();
}

void ShortcutOutlineView::setEmptyText(const QString &text)
{
    m_emptyText = text;
    viewport()->update();
    setAccessibleDescription(model()->rowCount() > 0 ? QString() : text);
}

void ShortcutOutlineView::setAllExpanded(bool expanded)
{
    if (expanded)
        expandAll();
    else
        collapseAll();
}

void ShortcutOutlineView::selectFirst()
{
    const QModelIndex group = model()->index(0, Column::Name);
    const QModelIndex below = indexBelow(group).siblingAtColumn(Column::Name);
    setCurrentIndex(below.isValid() && below.parent().isValid() ? below : group);
}

void ShortcutOutlineView::tellName(const QModelIndex &index)
{
    platform::tellOfCell(*this, index.siblingAtColumn(Column::Name), QAccessible::NameChanged);
}

ShortcutOutlineView::State ShortcutOutlineView::state() const
{
    State state;
    for (int row = 0; row < model()->rowCount(); ++row) {
        const QModelIndex group = model()->index(row, Column::Name);
        if (isExpanded(group))
            state.expanded.append(nameAt(group));
    }
    state.current = namesDownTo(currentIndex());
    state.scrollPosition = verticalScrollBar()->value();
    return state;
}

void ShortcutOutlineView::setState(const State &state)
{
    for (int row = 0; row < model()->rowCount(); ++row) {
        const QModelIndex group = model()->index(row, Column::Name);
        setExpanded(group, state.expanded.contains(nameAt(group)));
    }
    if (const QModelIndex current = _indexNamed(state.current); current.isValid())
        setCurrentIndex(current);
    verticalScrollBar()->setValue(state.scrollPosition);
}

/// The cursor stays in the column whose cells say their row.
QModelIndex ShortcutOutlineView::moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers)
{
    return QTreeView::moveCursor(action, modifiers).siblingAtColumn(Column::Name);
}

void ShortcutOutlineView::focusInEvent(QFocusEvent *event)
{
    QTreeView::focusInEvent(event);
    platform::tellOfFocusedCell(*this);
}

void ShortcutOutlineView::keyPressEvent(QKeyEvent *event)
{
    const bool isPlain = !(event->modifiers() & ~Qt::KeypadModifier);
    for (const KeyRequest &request : keyRequests) {
        if (isPlain && event->key() == request.key && !event->isAutoRepeat() && currentIndex().isValid()) {
            Q_EMIT(this->*request.signal)(currentIndex());
            return;
        }
    }
    QTreeView::keyPressEvent(event);
}

void ShortcutOutlineView::contextMenuEvent(QContextMenuEvent *event)
{
    const bool isKey = event->reason() == QContextMenuEvent::Keyboard;
    const QModelIndex index = isKey ? currentIndex() : indexAt(event->pos());
    if (!index.isValid())
        return;
    const QRect row = visualRect(index.siblingAtColumn(Column::Name));
    Q_EMIT menuRequested(index, isKey ? row.center() : event->pos());
}

/// Two quick clicks on a check box are two clicks.
void ShortcutOutlineView::mouseDoubleClickEvent(QMouseEvent *event)
{
    if (indexAt(event->position().toPoint()).column() == Column::Enabled)
        mousePressEvent(event);
    else
        QTreeView::mouseDoubleClickEvent(event);
}

void ShortcutOutlineView::paintEvent(QPaintEvent *event)
{
    QTreeView::paintEvent(event);
    if (model()->rowCount() > 0)
        return;
    QPainter painter(viewport());
    painter.setPen(palette().color(QPalette::PlaceholderText));
    painter.drawText(viewport()->rect().adjusted(2 * gap, 0, -2 * gap, 0), Qt::AlignCenter | Qt::TextWordWrap,
                     m_emptyText);
}

void ShortcutOutlineView::_arrangeColumns()
{
    header()->setStretchLastSection(false);
    header()->setMinimumSectionSize(0);
    header()->moveSection(header()->visualIndex(Column::Enabled), 0);
    header()->setSectionResizeMode(Column::Enabled, QHeaderView::Fixed);
    header()->setSectionResizeMode(Column::Name, QHeaderView::Stretch);
    header()->setSectionResizeMode(Column::Shortcut, QHeaderView::Fixed);
    header()->resizeSection(Column::Enabled, style()->pixelMetric(QStyle::PM_IndicatorWidth) + 2 * gap);
    header()->resizeSection(Column::Shortcut, KeycapDelegate::widestKey(font()) + 2 * gap);
}

QModelIndex ShortcutOutlineView::_indexNamed(const QStringList &names) const
{
    QModelIndex index;
    for (const QString &name : names) {
        const QModelIndex first = model()->index(0, Column::Name, index);
        const QModelIndexList found =
            first.isValid() ? model()->match(first, Qt::DisplayRole, name, 1, Qt::MatchExactly) : QModelIndexList();
        if (found.isEmpty())
            return {};
        index = found.first();
    }
    return index;
}

} // namespace qw

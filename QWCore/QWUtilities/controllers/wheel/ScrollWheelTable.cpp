#include "ScrollWheelTable.h"

#include "ScrollWheelCells.h"
#include "ScrollWheelModel.h"

#include <QWPlatform/appkit/MenuItem.h>
#include <QWPlatform/appkit/windows/AccessibleCell.h>
#include <QWPlatform/foundation/Localization.h>

#include <QFocusEvent>
#include <QHeaderView>
#include <QMenu>
#include <QPainter>

#include <algorithm>

namespace qw
{

namespace
{
constexpr double smallerBy = 2; ///< Points, for the header.
constexpr int boxWidth = 30;

int widestTitle(const QMenu &menu, const QFontMetrics &metrics)
{
    int widest = 0;
    const QList<QAction *> items = menu.actions();
    for (const QAction *const item : items)
        widest = std::max(widest, metrics.horizontalAdvance(platform::titleOf(*item)));
    return widest;
}
} // namespace

ScrollWheelTable::ScrollWheelTable(QWidget *parent)
    : QTableView(parent)
{
    setItemDelegate(new ScrollWheelCells(*this));
    setSelectionBehavior(SelectRows);
    setSelectionMode(SingleSelection);
    setEditTriggers(NoEditTriggers);
    setTabKeyNavigation(false);
    setShowGrid(false);
    setAlternatingRowColors(true);
    setWordWrap(false);
    setFrameShape(NoFrame);
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    horizontalHeader()->setSectionsClickable(false);
    horizontalHeader()->setHighlightSections(false);
    horizontalHeader()->setMinimumSectionSize(boxWidth);
}

void ScrollWheelTable::setBindings(ScrollWheelModel &model)
{
    m_bindings = &model;
    setModel(&model);
    _fitColumns();
}

int ScrollWheelTable::selectedRow() const
{
    const QModelIndexList rows = selectionModel() ? selectionModel()->selectedRows() : QModelIndexList();
    return rows.isEmpty() ? -1 : rows.first().row();
}

int ScrollWheelTable::numberOfSelectedRows() const
{
    return selectionModel() ? static_cast<int>(selectionModel()->selectedRows().size()) : 0;
}

void ScrollWheelTable::_fitColumns()
{
    if (!m_bindings)
        return;
    QHeaderView &header = *horizontalHeader();
    QFont small = font();
    small.setPointSizeF(std::max(1.0, small.pointSizeF() - smallerBy));
    header.setFont(small);
    for (int column = 0; column < m_bindings->columnCount(); ++column) {
        const QMenu *const menu = m_bindings->menuOf(column);
        const int width =
            menu ? widestTitle(*menu, fontMetrics()) + ScrollWheelCells::popUpRoom + 4 : header.sectionSizeHint(column);
        const bool stretches = scrollWheelColumns[static_cast<std::size_t>(column)].takesTheRest;
        header.setSectionResizeMode(column, stretches ? QHeaderView::Stretch : QHeaderView::Fixed);
        header.resizeSection(column, std::max(width, boxWidth));
    }
}

void ScrollWheelTable::dataChanged(const QModelIndex &first, const QModelIndex &last, const QList<int> &roles)
{
    QTableView::dataChanged(first, last, roles);
    if (first == last)
        platform::tellOfCell(*this, first, QAccessible::NameChanged);
}

void ScrollWheelTable::focusInEvent(QFocusEvent *event)
{
    QTableView::focusInEvent(event);
    const bool comesBackwards = event->reason() == Qt::BacktabFocusReason;
    if (comesBackwards || event->reason() == Qt::TabFocusReason)
        selectionModel()->setCurrentIndex(
            currentIndex().siblingAtColumn(comesBackwards ? model()->columnCount() - 1 : 0),
            QItemSelectionModel::NoUpdate);
    platform::tellOfFocusedCell(*this);
}

/// Arrows to the sides may be shortcuts of the host.
bool ScrollWheelTable::focusNextPrevChild(bool next)
{
    const QModelIndex current = currentIndex();
    const QModelIndex cell = current.siblingAtColumn(current.column() + (next ? 1 : -1));
    if (!cell.isValid())
        return QTableView::focusNextPrevChild(next);
    setCurrentIndex(cell);
    return true;
}

void ScrollWheelTable::changeEvent(QEvent *event)
{
    QTableView::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange)
        _fitColumns();
}

/// An empty table says what belongs here.
void ScrollWheelTable::paintEvent(QPaintEvent *event)
{
    QTableView::paintEvent(event);
    if (!model() || model()->rowCount() > 0)
        return;
    QPainter painter(viewport());
    painter.setPen(palette().color(QPalette::PlaceholderText));
    painter.drawText(viewport()->rect().adjusted(20, 8, -20, -8), Qt::AlignCenter | Qt::TextWordWrap,
                     platform::localized("The wheel does nothing yet. Add a binding to give it an action."));
}

} // namespace qw

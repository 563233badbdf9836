#include "ToolbarItemList.h"

#include "QWPlatform/foundation/Localization.h"
#include "StandardToolbarIcons.h"
#include "Toolbar.h"
#include "ToolbarItem.h"
#include "ToolbarItemPainter.h"

#include <QDropEvent>
#include <QKeyEvent>
#include <QMimeData>

namespace platform
{

namespace
{
constexpr auto mimeType = "application/x-qw-toolbar-item";
constexpr int identifierRole = Qt::UserRole;
} // namespace

ToolbarItemList::ToolbarItemList(Toolbar &toolbar, QWidget *parent)
    : QListWidget(parent)
    , m_toolbar(toolbar)
{
    setViewMode(QListView::IconMode);
    setMovement(QListView::Static);
    setResizeMode(QListView::Adjust);
    setIconSize(toolbar.iconSize());
    setGridSize(ToolbarItemPainter::cell);
    setSpacing(0);
    setItemDelegate(new ToolbarItemPainter(this));
    setUniformItemSizes(true);
    setDragEnabled(true);
    setAcceptDrops(true);
    setDragDropMode(QAbstractItemView::DragDrop);
    connect(this, &QListWidget::itemDoubleClicked, this, &ToolbarItemList::itemChosen);
}

void ToolbarItemList::showItems(const QStringList &identifiers)
{
    const int row = currentRow();
    clear();
    for (const QString &identifier : identifiers) {
        if (QListWidgetItem *const item = _makeItem(identifier))
            addItem(item);
    }
    setCurrentRow(std::min(std::max(row, 0), count() - 1));
}

QListWidgetItem *ToolbarItemList::_makeItem(const QString &identifier)
{
    QIcon icon = standardToolbarIcon(identifier);
    QString title = localized(standardToolbarTitle(identifier));
    if (!Toolbar::isStandardItem(identifier)) {
        const std::unique_ptr<ToolbarItem> pictured = m_toolbar.paletteItem(identifier);
        if (!pictured)
            return nullptr;
        icon = pictured->icon();
        title = pictured->paletteLabel();
    }
    auto *const item = new QListWidgetItem(icon, title);
    item->setData(identifierRole, identifier);
    item->setToolTip(title);
    return item;
}

QString ToolbarItemList::currentIdentifier() const
{
    return currentItem() ? currentItem()->data(identifierRole).toString() : QString();
}

QStringList ToolbarItemList::mimeTypes() const
{
    return {mimeType};
}

QMimeData *ToolbarItemList::mimeData(const QList<QListWidgetItem *> &items) const
{
    auto *const mime = new QMimeData;
    if (!items.isEmpty())
        mime->setData(mimeType, items.first()->data(identifierRole).toString().toUtf8());
    return mime;
}

void ToolbarItemList::dragEnterEvent(QDragEnterEvent *event)
{
    _judgeDrag(*event);
}

void ToolbarItemList::dragMoveEvent(QDragMoveEvent *event)
{
    _judgeDrag(*event);
}

void ToolbarItemList::_judgeDrag(QDropEvent &event) const
{
    event.setAccepted(event.mimeData()->hasFormat(mimeType) && qobject_cast<ToolbarItemList *>(event.source()));
}

void ToolbarItemList::dropEvent(QDropEvent *event)
{
    const int fromRow = event->source() == this ? currentRow() : -1;
    event->setDropAction(Qt::CopyAction); // else the view that the drag began in removes its row
    event->accept();
    Q_EMIT itemDropped(QString::fromUtf8(event->mimeData()->data(mimeType)), fromRow,
                       _rowAt(event->position().toPoint()));
}

/// An item dropped on the right half of another comes behind it.
int ToolbarItemList::_rowAt(const QPoint &position) const
{
    const QListWidgetItem *const under = itemAt(position);
    if (!under)
        return count();
    return row(under) + (position.x() > visualItemRect(under).center().x() ? 1 : 0);
}

void ToolbarItemList::keyPressEvent(QKeyEvent *event)
{
    const int key = event->key();
    const bool movesItem = event->modifiers() == Qt::ControlModifier && (key == Qt::Key_Left || key == Qt::Key_Right);
    if (key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Space)
        Q_EMIT itemChosen();
    else if (movesItem || key == Qt::Key_Delete || key == Qt::Key_Backspace)
        event->ignore(); // the panel's
    else
        QListWidget::keyPressEvent(event);
}

} // namespace platform

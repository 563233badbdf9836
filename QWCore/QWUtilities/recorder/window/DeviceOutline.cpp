#include "DeviceOutline.h"

#include <QWBase/tables/QWIconTextCell.h>
#include <QWPlatform/appkit/windows/AccessibleCell.h>

#include <QApplication>

#include <algorithm>

namespace qw
{

namespace
{
constexpr int outlineTextSize = 11; ///< Points.
constexpr int deviceImageSize = 20;
constexpr int deviceRowHeight = 28;
constexpr int outlineStep = 8;

/// outlineView:willDisplayCell:forTableColumn:item: the group has no image and is quiet.
class DeviceCell : public QWIconTextCell
{
public:
    using QWIconTextCell::QWIconTextCell;

    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &item) const override
    {
        const QSize base = QWIconTextCell::sizeHint(option, item);
        return {base.width(), std::max(deviceRowHeight, base.height())};
    }

protected:
    void initStyleOption(QStyleOptionViewItem *option, const QModelIndex &item) const override
    {
        QWIconTextCell::initStyleOption(option, item);
        if (item.parent().isValid())
            return;
        option->features &= ~QStyleOptionViewItem::HasDecoration;
        option->icon = {};
        option->font.setBold(true);
        option->fontMetrics = QFontMetrics(option->font);
        const QColor quiet = option->palette.color(QPalette::Active, QPalette::PlaceholderText);
        option->palette.setColor(QPalette::Disabled, QPalette::Text, quiet);
    }
};
} // namespace

DeviceOutline::DeviceOutline(QWidget *parent)
    : QTreeView(parent)
{
    auto *const cell = new DeviceCell(this);
    QFont font = QApplication::font();
    font.setPointSize(outlineTextSize);
    cell->setFont(font);
    setItemDelegate(cell);
    setModel(&m_hierarchy);
    setHeaderHidden(true);
    setRootIsDecorated(false);
    setIndentation(outlineStep);
    setItemsExpandable(false); // outlineView:shouldCollapseItem:
    setExpandsOnDoubleClick(false);
    setUniformRowHeights(true);
    setEditTriggers(NoEditTriggers);
    setIconSize({deviceImageSize, deviceImageSize});
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setTabKeyNavigation(false);
    viewport()->setBackgroundRole(QPalette::Window);
    expandAll();
}

DeviceOutline::~DeviceOutline()
{
    blockSignals(true);
    setModel(nullptr); // which goes before the view
}

void DeviceOutline::setDeviceImage(const QIcon &image)
{
    static_cast<QWIconTextCell *>(itemDelegate())->setImage(image);
    viewport()->update();
}

void DeviceOutline::setDevices(const DeviceHierarchy::Devices &devices)
{
    m_hierarchy.setDevices(devices);
    expandAll();
}

void DeviceOutline::select(const QWVeskDevice *device)
{
    const QModelIndex item = m_hierarchy.itemOf(device);
    if (item.isValid())
        selectionModel()->setCurrentIndex(item, QItemSelectionModel::ClearAndSelect);
    else
        selectionModel()->clear();
}

void DeviceOutline::focusInEvent(QFocusEvent *event)
{
    QTreeView::focusInEvent(event);
    platform::tellOfFocusedCell(*this);
}

void DeviceOutline::selectionChanged(const QItemSelection &selected, const QItemSelection &deselected)
{
    QTreeView::selectionChanged(selected, deselected);
    Q_EMIT selectionDidChange(m_hierarchy.deviceAt(selected.indexes().value(0)));
}

/// What would leave no recorder selected leaves the selection as it is.
QItemSelectionModel::SelectionFlags DeviceOutline::selectionCommand(const QModelIndex &item, const QEvent *event) const
{
    if (!m_hierarchy.deviceAt(item))
        return QItemSelectionModel::NoUpdate;
    const auto command = QTreeView::selectionCommand(item, event);
    return command & (QItemSelectionModel::Toggle | QItemSelectionModel::Deselect) ? QItemSelectionModel::ClearAndSelect
                                                                                   : command;
}

} // namespace qw

#include "KeycapDelegate.h"

#include "Keycaps.h"
#include "ShortcutOutlineModel.h"

#include <QApplication>
#include <QMouseEvent>
#include <QPainter>

namespace qw
{

namespace
{
constexpr int rightMargin = 8;
constexpr int rowMargin = 3;

const QStyle &styleOf(const QStyleOptionViewItem &option)
{
    return option.widget ? *option.widget->style() : *QApplication::style();
}

/// The place of a box in the middle of a cell.
QRect boxIn(const QStyleOptionViewItem &option)
{
    const QStyle &style = styleOf(option);
    const QSize size(style.pixelMetric(QStyle::PM_IndicatorWidth, &option, option.widget),
                     style.pixelMetric(QStyle::PM_IndicatorHeight, &option, option.widget));
    return QStyle::alignedRect(Qt::LeftToRight, Qt::AlignCenter, size, option.rect);
}

QStyle::State stateOfBox(int checkState)
{
    return checkState == Qt::Checked            ? QStyle::State_On
           : checkState == Qt::PartiallyChecked ? QStyle::State_NoChange
                                                : QStyle::State_Off;
}

/// A dark list may swallow the edge that the style gives a box.
void paintEdgeInTheDark(QPainter &painter, const QStyleOptionViewItem &option)
{
    if (option.palette.color(QPalette::Base).lightness() >= 128)
        return;
    QColor edge = option.palette.color(QPalette::Text);
    edge.setAlphaF(0.45F);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(edge);
    painter.drawRoundedRect(QRectF(option.rect).adjusted(0.5, 0.5, -0.5, -0.5), 2, 2);
    painter.restore();
}

QColor inkFor(const QStyleOptionViewItem &option)
{
    const bool isSelected = option.state & QStyle::State_Selected;
    return option.palette.color(isSelected ? QPalette::HighlightedText : QPalette::Text);
}
} // namespace

KeycapDelegate::KeycapDelegate(QObject *parent)
    : QStyledItemDelegate(parent)
{
}

KeycapDelegate::~KeycapDelegate() = default;

int KeycapDelegate::widestKey(const QFont &font)
{
    return Keycaps::size({"⌃", "⌥", "⇧", "⌘", "F15"}, font).width() + rightMargin;
}

void KeycapDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    if (index.flags() & Qt::ItemIsUserCheckable)
        return _paintBox(*painter, option, index);
    const QStringList texts = index.data(ShortcutOutlineModel::KeycapsRole).toStringList();
    if (texts.isEmpty())
        return QStyledItemDelegate::paint(painter, option, index);
    QStyleOptionViewItem item = option;
    initStyleOption(&item, index);
    item.text.clear();
    styleOf(item).drawControl(QStyle::CE_ItemViewItem, &item, painter, item.widget);
    Keycaps::paint(*painter, item.rect.adjusted(0, 0, -rightMargin, 0), Qt::AlignRight | Qt::AlignVCenter, texts,
                   item.font, inkFor(item));
}

QSize KeycapDelegate::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    const int height = Keycaps::size({"⌘"}, option.font).height() + 2 * rowMargin;
    return QStyledItemDelegate::sizeHint(option, index).expandedTo({0, height});
}

/// A click anywhere in the cell hits the box.
bool KeycapDelegate::editorEvent(QEvent *event, QAbstractItemModel *model, const QStyleOptionViewItem &,
                                 const QModelIndex &index)
{
    if (!(index.flags() & Qt::ItemIsUserCheckable) || event->type() != QEvent::MouseButtonRelease ||
        static_cast<QMouseEvent *>(event)->button() != Qt::LeftButton)
        return false;
    const bool isOn = index.data(Qt::CheckStateRole).toInt() == Qt::Checked;
    return model->setData(index, isOn ? Qt::Unchecked : Qt::Checked, Qt::CheckStateRole);
}

void KeycapDelegate::_paintBox(QPainter &painter, const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    QStyleOptionViewItem item = option;
    initStyleOption(&item, index);
    item.features &= ~QStyleOptionViewItem::HasCheckIndicator;
    const QStyle &style = styleOf(item);
    style.drawControl(QStyle::CE_ItemViewItem, &item, &painter, item.widget);
    item.rect = boxIn(item);
    item.state = (item.state & (QStyle::State_Enabled | QStyle::State_Active)) |
                 stateOfBox(index.data(Qt::CheckStateRole).toInt());
    style.drawPrimitive(QStyle::PE_IndicatorItemViewItemCheck, &item, &painter, item.widget);
    paintEdgeInTheDark(painter, item);
}

} // namespace qw

#include "KeycapDelegate.h"

#include "Keycaps.h"
#include "ShortcutOutlineModel.h"

#include <QApplication>
#include <QPainter>

namespace qw
{

namespace
{
constexpr int rightMargin = 8;
constexpr int rowMargin = 3;

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
    const QStringList texts = index.data(ShortcutOutlineModel::KeycapsRole).toStringList();
    if (texts.isEmpty())
        return QStyledItemDelegate::paint(painter, option, index);
    QStyleOptionViewItem item = option;
    initStyleOption(&item, index);
    item.text.clear();
    const QStyle *const style = item.widget ? item.widget->style() : QApplication::style();
    style->drawControl(QStyle::CE_ItemViewItem, &item, painter, item.widget);
    Keycaps::paint(*painter, item.rect.adjusted(0, 0, -rightMargin, 0), Qt::AlignRight | Qt::AlignVCenter, texts,
                   item.font, inkFor(item));
}

QSize KeycapDelegate::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    const int height = Keycaps::size({"⌘"}, option.font).height() + 2 * rowMargin;
    return QStyledItemDelegate::sizeHint(option, index).expandedTo({0, height});
}

} // namespace qw

#pragma once

#include <QStyledItemDelegate>

namespace platform
{

/// Paints an item as its picture above its name, both on the highlight when it is selected.
class ToolbarItemPainter : public QStyledItemDelegate
{
    Q_OBJECT

public:
    static constexpr QSize cell{112, 68};

    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;
};

} // namespace platform

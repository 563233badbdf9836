#pragma once

#include "TabularFigures.h"

#include <QStyledItemDelegate>

#include <optional>

namespace qw
{

/// Cells of a table whose rows are what is chosen: texts of one line without a ground of their own, numbers (what is
/// aligned at the right) in figures that stand below one another. What does not fit is told by a tool tip.
class TableCells : public QStyledItemDelegate
{
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    /// Pixels beside the text of cells and headers, to either side.
    static constexpr int padding = 6;

    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    bool helpEvent(QHelpEvent *event, QAbstractItemView *view, const QStyleOptionViewItem &option,
                   const QModelIndex &index) override;

protected:
    void initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const override;

private:
    const TabularFigures &_figures(const QFont &font) const;
    void _paintText(QPainter &painter, const QStyleOptionViewItem &option) const;

    mutable std::optional<TabularFigures> m_figures; ///< Of the font drawn last: there is one in a table.
};

} // namespace qw

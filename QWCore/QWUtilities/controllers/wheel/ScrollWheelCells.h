#pragma once

#include <QPersistentModelIndex>
#include <QStyledItemDelegate>

class QAbstractItemView;
class QMenu;

namespace qw
{

class ScrollWheelModel;

/// Draws and works the cells of the table: boxes that a click or Space toggles, and pop-ups that a click, Space or F2
/// opens.
class ScrollWheelCells : public QStyledItemDelegate
{
    Q_OBJECT

public:
    explicit ScrollWheelCells(QAbstractItemView &view);

    /// Room beside the title of a pop-up.
    static constexpr int popUpRoom = 26;

    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    bool editorEvent(QEvent *event, QAbstractItemModel *model, const QStyleOptionViewItem &option,
                     const QModelIndex &index) override;

private:
    void _paintBox(QPainter &painter, const QStyleOptionViewItem &option) const;
    void _paintPopUp(QPainter &painter, const QStyleOptionViewItem &option) const;
    void _openMenu(QMenu &menu, const QModelIndex &index);
    void _choose(QMenu &menu, QAction *item);

    QAbstractItemView &m_view;
    QPersistentModelIndex m_opened; ///< The cell whose menu was opened last.
};

} // namespace qw

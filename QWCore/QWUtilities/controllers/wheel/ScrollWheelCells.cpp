#include "ScrollWheelCells.h"

#include "ScrollWheelModel.h"

#include <QAbstractItemView>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>

namespace qw
{

namespace
{
constexpr int margin = 8;
constexpr int rowHeight = 26;
constexpr int boxSize = 15;
constexpr qreal chevronWidth = 6;
constexpr qreal chevronHeight = 3;

const ScrollWheelModel &modelOf(const QModelIndex &index)
{
    return static_cast<const ScrollWheelModel &>(*index.model());
}

/// A cell is worked when the button comes up in it, so that a press may still become something else.
bool isClick(const QEvent &event, const QRect &cell)
{
    if (event.type() != QEvent::MouseButtonRelease)
        return false;
    const auto &mouse = static_cast<const QMouseEvent &>(event);
    return mouse.button() == Qt::LeftButton && cell.contains(mouse.position().toPoint());
}

bool isKey(const QEvent &event)
{
    if (event.type() != QEvent::KeyPress)
        return false;
    const int key = static_cast<const QKeyEvent &>(event).key();
    return key == Qt::Key_Space || key == Qt::Key_Select || key == Qt::Key_F2;
}

QColor inkOf(const QStyleOptionViewItem &option)
{
    const auto group = option.state & QStyle::State_Active ? QPalette::Active : QPalette::Inactive;
    const bool isSelected = option.state & QStyle::State_Selected;
    return option.palette.color(group, isSelected ? QPalette::HighlightedText : QPalette::Text);
}

/// Two small arrows, one up and one down: the sign of a pop-up.
void paintChevrons(QPainter &painter, const QPointF &middle)
{
    for (const qreal direction : {-1.0, 1.0}) {
        const qreal base = middle.y() + direction * 2.5;
        const QPointF points[] = {{middle.x() - chevronWidth / 2, base},
                                  {middle.x(), base + direction * chevronHeight},
                                  {middle.x() + chevronWidth / 2, base}};
        painter.drawPolyline(points, 3);
    }
}

void paintTick(QPainter &painter, const QRectF &box, const QColor &colour)
{
    const auto at = [&](qreal x, qreal y) { return box.topLeft() + QPointF(x * box.width(), y * box.height()); };
    const QPointF points[] = {at(0.27, 0.53), at(0.43, 0.69), at(0.73, 0.33)};
    painter.setPen(QPen(colour, 1.75, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPolyline(points, 3);
}
} // namespace

ScrollWheelCells::ScrollWheelCells(QAbstractItemView &view)
    : QStyledItemDelegate(&view)
    , m_view(view)
{
}

QSize ScrollWheelCells::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    return QStyledItemDelegate::sizeHint(option, index).expandedTo({0, rowHeight});
}

void ScrollWheelCells::paint(QPainter *painter, const QStyleOptionViewItem &given, const QModelIndex &index) const
{
    QStyleOptionViewItem option = given;
    initStyleOption(&option, index);
    const QString text = std::exchange(option.text, {});
    option.features &= ~QStyleOptionViewItem::HasCheckIndicator;
    const QStyle &style = *m_view.style();
    style.drawControl(QStyle::CE_ItemViewItem, &option, painter, &m_view); // background and focus
    option.text = text;
    painter->save();
    if (modelOf(index).menuOf(index.column()))
        _paintPopUp(*painter, option);
    else
        _paintBox(*painter, option);
    painter->restore();
}

/// Drawn here and not by the style: some draw boxes that cannot be seen on a dark list or on a selected row.
void ScrollWheelCells::_paintBox(QPainter &painter, const QStyleOptionViewItem &option) const
{
    const bool isSelected = option.state & QStyle::State_Selected;
    const bool isChecked = option.checkState == Qt::Checked;
    const QColor ink = inkOf(option);
    QColor edge = ink;
    edge.setAlphaF(isSelected ? 0.9f : 0.45f);
    const QColor filled = isSelected ? ink : option.palette.color(QPalette::Active, QPalette::Highlight);
    const QSize size(boxSize, boxSize);
    const QRectF box = QStyle::alignedRect(option.direction, Qt::AlignCenter, size, option.rect);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(isChecked ? QPen(Qt::NoPen) : QPen(edge, 1));
    painter.setBrush(isChecked ? QBrush(filled) : QBrush(Qt::NoBrush));
    painter.drawRoundedRect(box.adjusted(0.5, 0.5, -0.5, -0.5), 3, 3);
    if (isChecked)
        paintTick(painter, box, option.palette.color(isSelected ? QPalette::Highlight : QPalette::HighlightedText));
}

void ScrollWheelCells::_paintPopUp(QPainter &painter, const QStyleOptionViewItem &option) const
{
    const QColor ink = inkOf(option);
    const QRect text = option.rect.adjusted(margin, 0, margin - popUpRoom, 0);
    painter.setFont(option.font);
    painter.setPen(ink);
    painter.drawText(text, Qt::AlignLeft | Qt::AlignVCenter,
                     option.fontMetrics.elidedText(option.text, Qt::ElideRight, text.width()));
    QColor quiet = ink;
    quiet.setAlphaF(0.65f);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(quiet, 1.25, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    paintChevrons(painter,
                  QRectF(option.rect).center() + QPointF(option.rect.width() / 2.0 - margin - chevronWidth / 2, 0));
}

bool ScrollWheelCells::editorEvent(QEvent *event, QAbstractItemModel *model, const QStyleOptionViewItem &option,
                                   const QModelIndex &index)
{
    if (!isClick(*event, option.rect) && !isKey(*event))
        return false;
    if (QMenu *const menu = modelOf(index).menuOf(index.column()))
        _openMenu(*menu, index);
    else
        model->setData(index, !index.data(Qt::EditRole).toBool());
    return true;
}

/// The present item comes to lie over the cell.
void ScrollWheelCells::_openMenu(QMenu &menu, const QModelIndex &index)
{
    if (menu.isEmpty())
        return;
    m_opened = index;
    const int chosen = index.data(Qt::EditRole).toInt();
    const QList<QAction *> items = menu.actions();
    for (int i = 0; i < items.size(); ++i) {
        items[i]->setCheckable(true);
        items[i]->setChecked(i == chosen);
    }
    disconnect(&menu, &QMenu::triggered, this, nullptr);
    connect(&menu, &QMenu::triggered, this, [this, &menu](QAction *item) { _choose(menu, item); });
    menu.popup(m_view.viewport()->mapToGlobal(m_view.visualRect(index).topLeft()), items.value(chosen));
    menu.setActiveAction(items.value(chosen, items.first()));
}

void ScrollWheelCells::_choose(QMenu &menu, QAction *item)
{
    if (m_opened.isValid())
        m_view.model()->setData(m_opened, menu.actions().indexOf(item));
}

} // namespace qw

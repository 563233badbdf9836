#include "TableCells.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QHelpEvent>
#include <QPainter>
#include <QToolTip>

namespace qw
{

namespace
{
constexpr int longestTip = 400;   ///< Characters.
constexpr int longestText = 1000; ///< Characters; laying out all of a text of megabytes would hold up the window.

QStyle &styleOf(const QStyleOptionViewItem &option)
{
    return option.widget ? *option.widget->style() : *QApplication::style();
}

QRect textPlace(const QStyleOptionViewItem &option)
{
    return option.rect.adjusted(TableCells::padding, 0, -TableCells::padding, 0);
}

QColor textColor(const QStyleOptionViewItem &option)
{
    const bool isEnabled = option.state & QStyle::State_Enabled;
    const bool isActive = option.state & QStyle::State_Active;
    const auto group = !isEnabled ? QPalette::Disabled : isActive ? QPalette::Normal : QPalette::Inactive;
    const bool isSelected = option.state & QStyle::State_Selected;
    return option.palette.color(group, isSelected ? QPalette::HighlightedText : QPalette::Text);
}

/// A tool tip would take a text with markup for a page.
QString asPlainTip(const QString &text)
{
    const QString shown = text.size() > longestTip ? text.left(longestTip - 1) + QChar(0x2026) : text;
    return "<span>" + shown.toHtmlEscaped() + "</span>";
}
} // namespace

void TableCells::initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const
{
    QStyledItemDelegate::initStyleOption(option, index);
    if (option->text.size() > longestText)
        option->text = option->text.left(longestText) + QChar(0x2026);
    option->text.replace(QChar::LineSeparator, ' '); // what the base class made of line breaks
    option->textElideMode = Qt::ElideRight;
    option->backgroundBrush = {};
    if (option->state & QStyle::State_Selected)
        option->state &= ~QStyle::State_HasFocus; // the whole row stands out
}

void TableCells::paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    QStyleOptionViewItem cell = option;
    initStyleOption(&cell, index);
    QStyleOptionViewItem ground = cell;
    ground.text.clear();
    styleOf(cell).drawControl(QStyle::CE_ItemViewItem, &ground, painter, cell.widget);
    painter->save();
    _paintText(*painter, cell);
    painter->restore();
}

void TableCells::_paintText(QPainter &painter, const QStyleOptionViewItem &option) const
{
    const QRect place = textPlace(option);
    const TabularFigures &figures = _figures(option.font);
    const bool isNumber = option.displayAlignment & Qt::AlignRight && option.direction == Qt::LeftToRight &&
                          TabularFigures::canDraw(option.text);
    painter.setPen(textColor(option));
    painter.setFont(option.font);
    if (isNumber && figures.isNeeded() && figures.width(option.text) <= place.width()) {
        figures.drawAtRight(painter, place, option.text);
        return;
    }
    const QString shown = option.fontMetrics.elidedText(option.text, Qt::ElideRight, place.width());
    painter.drawText(place, int(option.displayAlignment | Qt::TextSingleLine), shown);
}

QSize TableCells::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    QStyleOptionViewItem cell = option;
    initStyleOption(&cell, index);
    return {cell.fontMetrics.horizontalAdvance(cell.text) + 2 * padding, cell.fontMetrics.height()};
}

bool TableCells::helpEvent(QHelpEvent *event, QAbstractItemView *view, const QStyleOptionViewItem &option,
                           const QModelIndex &index)
{
    if (event->type() != QEvent::ToolTip || !index.isValid())
        return QStyledItemDelegate::helpEvent(event, view, option, index);
    QStyleOptionViewItem cell = option;
    initStyleOption(&cell, index);
    const bool fits = cell.fontMetrics.horizontalAdvance(cell.text) <= textPlace(cell).width();
    QToolTip::showText(event->globalPos(), fits ? QString() : asPlainTip(cell.text), view);
    return true;
}

const TabularFigures &TableCells::_figures(const QFont &font) const
{
    if (!m_figures || m_figures->font() != font)
        m_figures.emplace(font);
    return *m_figures;
}

} // namespace qw

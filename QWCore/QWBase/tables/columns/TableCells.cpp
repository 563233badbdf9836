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
constexpr int longestTip = 400; ///< Characters.

QStyle &styleOf(const QStyleOptionViewItem &option)
{
    return option.widget ? *option.widget->style() : *QApplication::style();
}

QRect textPlace(const QStyleOptionViewItem &option)
{
    const int margin = styleOf(option).pixelMetric(QStyle::PM_FocusFrameHMargin, &option, option.widget) + 1;
    return styleOf(option)
        .subElementRect(QStyle::SE_ItemViewItemText, &option, option.widget)
        .adjusted(margin, 0, -margin, 0);
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
    if (!_paintFigures(*painter, cell))
        styleOf(cell).drawControl(QStyle::CE_ItemViewItem, &cell, painter, cell.widget);
}

/// False where the style draws them right, or they do not fit.
bool TableCells::_paintFigures(QPainter &painter, const QStyleOptionViewItem &option) const
{
    const TabularFigures &figures = _figures(option.font);
    if (!(option.displayAlignment & Qt::AlignRight) || !figures.isNeeded())
        return false;
    const QRect place = textPlace(option);
    if (figures.width(option.text) > place.width())
        return false;
    QStyleOptionViewItem ground = option;
    ground.text.clear();
    styleOf(option).drawControl(QStyle::CE_ItemViewItem, &ground, &painter, option.widget);
    painter.save();
    painter.setPen(textColor(option));
    figures.drawAtRight(painter, place, option.text);
    painter.restore();
    return true;
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

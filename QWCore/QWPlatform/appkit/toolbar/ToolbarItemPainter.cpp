#include "ToolbarItemPainter.h"

#include <QIcon>
#include <QPainter>

namespace platform
{

namespace
{
constexpr int inset = 4;
constexpr int padding = 8;
constexpr double cornerRadius = 6;

void paintHighlight(QPainter &painter, const QRect &rect, const QPalette &palette)
{
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(palette.brush(QPalette::Active, QPalette::Highlight));
    painter.drawRoundedRect(rect, cornerRadius, cornerRadius);
}
} // namespace

void ToolbarItemPainter::paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    const bool isSelected = option.state & QStyle::State_Selected;
    const QRect frame = option.rect.adjusted(inset, inset, -inset, -inset);
    const QRect inner = frame.adjusted(padding / 2, padding, -padding / 2, -padding / 2);
    painter->save();
    if (isSelected)
        paintHighlight(*painter, frame, option.palette);
    const QRect picture(inner.topLeft(), QSize(inner.width(), option.decorationSize.height()));
    const auto icon = index.data(Qt::DecorationRole).value<QIcon>();
    icon.paint(painter, picture, Qt::AlignCenter, isSelected ? QIcon::Selected : QIcon::Normal);
    const QRect name = inner.adjusted(0, picture.height() + inset, 0, 0);
    painter->setPen(option.palette.color(QPalette::Active, isSelected ? QPalette::HighlightedText : QPalette::Text));
    const QString shown = option.fontMetrics.elidedText(index.data().toString(), Qt::ElideRight, name.width());
    painter->drawText(name, Qt::AlignHCenter | Qt::AlignTop, shown);
    painter->restore();
}

QSize ToolbarItemPainter::sizeHint(const QStyleOptionViewItem &, const QModelIndex &) const
{
    return cell;
}

} // namespace platform

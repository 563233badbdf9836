#include "TableHeader.h"

#include "TableCells.h"

#include <QAccessible>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QScopedValueRollback>
#include <QStyleOptionFocusRect>
#include <QTimer>

namespace qw
{

namespace
{
/// Of the children of a table that a screen reader knows, headers of columns come after the corner.
QAccessibleInterface *accessibleSection(QWidget &table, int section)
{
    QAccessibleInterface *const list = QAccessible::queryAccessibleInterface(&table);
    QAccessibleInterface *const cell = list ? list->child(section + 1) : nullptr;
    return cell && cell->role() == QAccessible::ColumnHeader ? cell : nullptr;
}
} // namespace

TableHeader::TableHeader(QWidget *parent)
    : QHeaderView(Qt::Horizontal, parent)
{
    setFocusPolicy(Qt::TabFocus);
    setSectionsMovable(true);
    setSectionsClickable(true);
    setHighlightSections(false);
    setStretchLastSection(false);
    setTextElideMode(Qt::ElideRight);
    connect(this, &QHeaderView::sectionClicked, this, &TableHeader::setFocusSection);
}

TableHeader::~TableHeader() = default;

int TableHeader::focusSection() const
{
    const bool shows = m_focusSection >= 0 && m_focusSection < count() && !isSectionHidden(m_focusSection);
    return shows ? m_focusSection : _firstShown();
}

void TableHeader::setFocusSection(int section)
{
    m_focusSection = section;
    viewport()->update();
    QTimer::singleShot(0, this, &TableHeader::_tellFocus); // a click changes the name first
}

void TableHeader::moveBy(int section, int places)
{
    const int other = _neighbour(section, places);
    if (other < 0)
        return;
    moveSection(visualIndex(section), visualIndex(other));
    setFocusSection(section);
}

bool TableHeader::canMoveBy(int section, int places) const
{
    return _neighbour(section, places) >= 0;
}

/// -1 where there is none.
int TableHeader::_neighbour(int section, int places) const
{
    int visual = visualIndex(section) + places;
    while (visual >= 0 && visual < count() && isSectionHidden(logicalIndex(visual)))
        visual += places;
    return section >= 0 && visual >= 0 && visual < count() ? logicalIndex(visual) : -1;
}

int TableHeader::_firstShown() const
{
    for (int visual = 0; visual < count(); ++visual)
        if (!isSectionHidden(logicalIndex(visual)))
            return logicalIndex(visual);
    return -1;
}

int TableHeader::_placesTowards(int key) const
{
    if (key != Qt::Key_Left && key != Qt::Key_Right)
        return 0;
    return (key == Qt::Key_Right) == isLeftToRight() ? 1 : -1;
}

bool TableHeader::event(QEvent *event)
{
    const bool isOffered = event->type() == QEvent::ShortcutOverride && hasFocus();
    if (isOffered && _placesTowards(static_cast<QKeyEvent *>(event)->key()) != 0)
        event->accept(); // no menu's key while the focus is here
    return QHeaderView::event(event);
}

void TableHeader::keyPressEvent(QKeyEvent *event)
{
    if (_take(*event))
        event->accept();
    else
        QWidget::keyPressEvent(event);
}

bool TableHeader::_take(const QKeyEvent &event)
{
    const int section = focusSection();
    if (section < 0)
        return false;
    const bool isPlain = !(event.modifiers() & ~Qt::KeypadModifier);
    const int places = _placesTowards(event.key());
    if (places != 0 && event.modifiers() == Qt::ControlModifier)
        moveBy(section, places);
    else if (places != 0 && isPlain)
        setFocusSection(canMoveBy(section, places) ? _neighbour(section, places) : section);
    else if (isPlain && event.key() == Qt::Key_Down)
        parentWidget()->setFocus(Qt::OtherFocusReason);
    else if (isPlain && (event.key() == Qt::Key_Space || event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter))
        Q_EMIT sectionClicked(section);
    else
        return false;
    return true;
}

void TableHeader::focusInEvent(QFocusEvent *event)
{
    QWidget::focusInEvent(event);
    viewport()->update();
    QTimer::singleShot(0, this, &TableHeader::_tellFocus); // Qt tells of the header itself first
}

void TableHeader::focusOutEvent(QFocusEvent *event)
{
    QWidget::focusOutEvent(event);
    viewport()->update();
}

/// Right clicks open the menu and do not sort.
void TableHeader::mousePressEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton)
        QHeaderView::mousePressEvent(event);
}

void TableHeader::contextMenuEvent(QContextMenuEvent *event)
{
    const bool isKey = event->reason() == QContextMenuEvent::Keyboard;
    const int section = isKey ? focusSection() : logicalIndexAt(event->pos());
    const QPoint below(sectionViewportPosition(section), height());
    Q_EMIT menuRequested(section, isKey ? viewport()->mapToGlobal(below) : event->globalPos());
}

/// Titles stand above the texts of their cells, which a style would not see to.
void TableHeader::paintSection(QPainter *painter, const QRect &rect, int section) const
{
    const QScopedValueRollback<bool> ground(m_paintsGround, true);
    painter->save();
    QHeaderView::paintSection(painter, rect, section);
    painter->restore();
    m_paintsGround = false;
    _paintTitle(*painter, rect, section);
    if (hasFocus() && section == focusSection())
        _paintFocus(*painter, rect);
}

void TableHeader::initStyleOptionForIndex(QStyleOptionHeader *option, int section) const
{
    QHeaderView::initStyleOptionForIndex(option, section);
    if (m_paintsGround)
        option->text.clear();
}

QSize TableHeader::sectionSizeFromContents(int section) const
{
    return QHeaderView::sectionSizeFromContents(section) + QSize(2 * TableCells::padding, 0);
}

void TableHeader::_paintTitle(QPainter &painter, const QRect &rect, int section) const
{
    QStyleOptionHeaderV2 option;
    initStyleOption(&option);
    option.rect = rect;
    initStyleOptionForIndex(&option, section);
    QRect place = rect.adjusted(TableCells::padding, 0, -TableCells::padding, 0);
    if (option.sortIndicator != QStyleOptionHeader::None) {
        const int arrow = style()->subElementRect(QStyle::SE_HeaderArrow, &option, this).width() + 2;
        place.adjust(isLeftToRight() ? 0 : arrow, 0, isLeftToRight() ? -arrow : 0, 0);
    }
    painter.save();
    painter.setFont(_titleFont(section));
    const QString shown = painter.fontMetrics().elidedText(option.text, Qt::ElideRight, place.width());
    style()->drawItemText(&painter, place, int(option.textAlignment | Qt::AlignVCenter), option.palette, isEnabled(),
                          shown, QPalette::ButtonText);
    painter.restore();
}

/// The title that is sorted by stands out.
QFont TableHeader::_titleFont(int section) const
{
    QFont titleFont = font();
    titleFont.setBold(titleFont.bold() || (isSortIndicatorShown() && sortIndicatorSection() == section));
    return titleFont;
}

void TableHeader::_paintFocus(QPainter &painter, const QRect &rect) const
{
    QStyleOptionFocusRect option;
    option.initFrom(this);
    option.rect = rect.adjusted(1, 1, -2, -2);
    option.state |= QStyle::State_KeyboardFocusChange | QStyle::State_HasFocus;
    option.backgroundColor = palette().color(QPalette::Button);
    style()->drawPrimitive(QStyle::PE_FrameFocusRect, &option, &painter, this);
}

void TableHeader::_tellFocus()
{
    if (!hasFocus() || !QAccessible::isActive())
        return;
    if (QAccessibleInterface *const cell = accessibleSection(*parentWidget(), focusSection())) {
        QAccessibleEvent event(cell, QAccessible::Focus);
        QAccessible::updateAccessibility(&event);
    }
}

} // namespace qw

#include "CornerButton.h"

#include "ColumnsMenu.h"

#include <QWPlatform/appkit/TintedIcon.h>
#include <QWPlatform/foundation/Localization.h>

#include <QKeyEvent>
#include <QMenu>
#include <QPainter>
#include <QStyleOptionHeader>

namespace qw
{

namespace
{
constexpr auto columnsImage = R"(<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 24 24" fill="none"
stroke="currentColor" stroke-width="2.5" stroke-linecap="round" stroke-linejoin="round">
<path d="M6 9.5l6 6 6-6"/></svg>)";
constexpr int imageSize = 12;
} // namespace

CornerButton::CornerButton(const ColumnsMenu &columns, QWidget *parent)
    : QToolButton(parent)
    , m_columns(columns)
{
    setObjectName("cornerButton");
    setIcon(platform::tintedIconFromSvg(columnsImage));
    setIconSize({imageSize, imageSize});
    setFocusPolicy(Qt::TabFocus);
    setPopupMode(InstantPopup);
    setToolTip(platform::localized("Columns"));
    setAccessibleName(toolTip());
    auto *const menu = new QMenu(this);
    setMenu(menu);
    connect(menu, &QMenu::aboutToShow, this, [this, menu] {
        menu->clear();
        m_columns.fill(*menu);
    });
}

CornerButton::~CornerButton() = default;

QSize CornerButton::sizeHint() const
{
    return {imageSize, imageSize};
}

void CornerButton::keyPressEvent(QKeyEvent *event)
{
    const bool opens = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter || event->key() == Qt::Key_Down;
    if (opens && !event->isAutoRepeat())
        showMenu();
    else
        QToolButton::keyPressEvent(event);
}

/// As a piece of the header that it continues.
void CornerButton::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    QStyleOptionHeader ground;
    ground.initFrom(this);
    ground.orientation = Qt::Horizontal;
    ground.position = QStyleOptionHeader::End;
    if (isDown())
        ground.state |= QStyle::State_Sunken;
    style()->drawControl(QStyle::CE_HeaderSection, &ground, &painter, this);
    QRect place({}, iconSize());
    place.moveCenter(rect().center());
    icon().paint(&painter, place, Qt::AlignCenter, isEnabled() ? QIcon::Normal : QIcon::Disabled);
    if (!hasFocus())
        return;
    QStyleOptionFocusRect focus;
    focus.initFrom(this);
    focus.rect = rect().adjusted(1, 1, -2, -2);
    focus.state |= QStyle::State_KeyboardFocusChange;
    style()->drawPrimitive(QStyle::PE_FrameFocusRect, &focus, &painter, this);
}

} // namespace qw

#include "MenuEvents.h"

#include "MenuStyle.h"
#include "MenuTyping.h"
#include "MenuWheel.h"

#include <QKeyEvent>
#include <QMenu>
#include <QWheelEvent>

namespace platform
{

namespace
{
bool concernsMenus(const QEvent &event)
{
    return event.type() == QEvent::KeyPress || event.type() == QEvent::Wheel || event.type() == QEvent::Polish;
}

bool typeInto(QMenu &menu, QKeyEvent &press)
{
    static MenuTyping typing;
    if (!typing.take(menu, press))
        return false;
    press.accept();
    return true;
}

bool turnWheel(QMenu &menu, QWheelEvent &event)
{
    static MenuWheel wheel;
    wheel.turn(menu, event);
    event.accept();
    return true;
}
} // namespace

bool handleMenuEvent(QObject &receiver, QEvent &event)
{
    auto *const menu = concernsMenus(event) ? qobject_cast<QMenu *>(&receiver) : nullptr;
    if (!menu)
        return false;
    if (event.type() == QEvent::KeyPress)
        return typeInto(*menu, static_cast<QKeyEvent &>(event));
    if (event.type() == QEvent::Wheel)
        return turnWheel(*menu, static_cast<QWheelEvent &>(event));
    letScroll(*menu);
    return false;
}

} // namespace platform

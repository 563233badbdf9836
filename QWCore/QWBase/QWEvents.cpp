#include "QWEvents.h"

#include <QInputEvent>
#include <QKeyEvent>

namespace QWEvents
{

namespace
{
/// The key that goes down in @p event, or 0.
int keyGoingDown(const QEvent &event)
{
    const bool down = event.type() == QEvent::KeyPress || event.type() == QEvent::ShortcutOverride;
    return down ? static_cast<const QKeyEvent &>(event).key() : 0;
}
} // namespace

bool isArrowKeyDownEvent(const QEvent &event)
{
    const int key = keyGoingDown(event);
    return key == Qt::Key_Left || key == Qt::Key_Right || isVerticalArrowKeyDownEvent(event);
}

bool isVerticalArrowKeyDownEvent(const QEvent &event)
{
    const int key = keyGoingDown(event);
    return key == Qt::Key_Up || key == Qt::Key_Down;
}

bool optionKeyDown(const QEvent &event)
{
    return event.isInputEvent() && static_cast<const QInputEvent &>(event).modifiers().testFlag(Qt::AltModifier);
}

} // namespace QWEvents

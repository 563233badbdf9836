#include "ScrollEvent.h"

#include "QWPlatform/appkit/events/ModifierFlags.h"
#include "QWPlatform/devices/input/KeyboardState.h"
#include "QWPlatform/machine/SystemServices.h"

#include <QGuiApplication>
#include <QWheelEvent>

namespace platform
{

namespace
{
constexpr double notch = QWheelEvent::DefaultDeltasPerStep;

/// On X11 Qt makes Alt turn a vertical wheel into a horizontal one, and the other way round.
bool areAxesSwapped(const QWheelEvent &event)
{
    return event.modifiers() & Qt::AltModifier && QGuiApplication::platformName() == QLatin1String("xcb");
}
} // namespace

ScrollEvent::ScrollEvent(const QWheelEvent &event)
    : modifierFlags(modifierFlagsOf(event.modifiers()))
{
    const QPoint turned = event.angleDelta();
    const QPoint angle = areAxesSwapped(event) ? turned.transposed() : turned;
    deltaX = angle.x() / notch;
    deltaY = angle.y() / notch;
    if (SystemServices::current().keyboardState->isCapsLockOn())
        modifierFlags |= CapsLockFlag;
}

} // namespace platform

#pragma once

#include <QWPlatform/qwplatform_export.h>

#include <QtGlobal>

class QWheelEvent;

namespace platform
{

/// What a scroll event says, in the desktop platform's terms. A value, made from a Qt event or, in a test, field by
/// field; it stays open, since one is made for every turn of the wheel.
struct QWPLATFORM_EXPORT ScrollEvent
{
    /// Says nothing.
    ScrollEvent() = default;

    /// Asks the keyboard state for Caps Lock; main thread. Where Qt has swapped the axes because Alt is held, they are
    /// those of the wheel again.
    ScrollEvent(const QWheelEvent &event);

    double deltaX = 0; ///< In lines, to the left; a notch of a classic wheel is 1, finer devices give fractions.
    double deltaY = 0; ///< In lines, away from the user.
    quint32 modifierFlags = 0; ///< Bits of KeyEvent::Flag, and 0x10000 while Caps Lock is on.
};

} // namespace platform

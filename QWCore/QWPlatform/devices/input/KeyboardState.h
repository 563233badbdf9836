#pragma once

#include <QWPlatform/qwplatform_private.h>

#include <QtGlobal>

#include <array>

class QKeyEvent;

namespace platform
{

/// Key map by key code: bit n of byte k is set while the key with code 8k + n is down. Codes 0 to 7 are the physical
/// keys A S D F H G Z X of a US keyboard.
using KeyMap = std::array<quint8, 16>;

/// Which keys are down now. Main thread.
class QWPLATFORM_SHARED_EXPORT KeyboardState
{
public:
    virtual ~KeyboardState();

    /// From now on keyMap() knows what goes down. The application asks for it when it launches; asking again changes
    /// nothing, and it costs next to nothing.
    virtual void startWatching() = 0;

    /// X11 is asked directly; elsewhere, what the application's windows were told since startWatching(), which this
    /// calls when nobody did. What waits to be told counts, too: it is looked at and acts later (see PendingInput).
    virtual KeyMap keyMap() = 0;

    /// Whether Caps Lock is locked, which Qt's modifiers do not tell. X11 is asked directly; elsewhere, what the keys
    /// of the application said last. False when nobody knows.
    virtual bool isCapsLockOn();

    /// Told of every key event before anybody else gets it: a key that a shortcut takes reaches no window.
    virtual void noteKeyEvent(const QKeyEvent &event);

    /// What the key of @p event types in the user's layout with Shift as it is held and no other modifier; 0 when the
    /// machine knows no more than the event itself.
    virtual char16_t characterOf(const QKeyEvent &event);
};

} // namespace platform

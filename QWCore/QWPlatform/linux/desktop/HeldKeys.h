#pragma once

#include "QWPlatform/devices/input/KeyboardState.h"

#include <QObject>

class QKeyEvent;

namespace platform
{

/// What is held, from the key events that the application gets. Its costs are one comparison an event.
class HeldKeys : public QObject
{
public:
    /// Watches the application object from now on, when there is one.
    HeldKeys();

    const KeyMap &map() const { return m_map; }

    /// As the last key of a real keyboard told; false before the first.
    bool isCapsLockOn() const { return m_isCapsLockOn; }

    /// For a key event that may not reach the application's filters; one noted twice counts once.
    void note(const QKeyEvent &key);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void _noteCapsLock(const QKeyEvent &key);

    KeyMap m_map{};
    bool m_isCapsLockOn = false;
    bool m_wasCapsLockOn = false; ///< When the Caps Lock key last went down.
};

} // namespace platform

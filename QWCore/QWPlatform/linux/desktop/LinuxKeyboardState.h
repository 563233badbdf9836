#pragma once

#include "QWPlatform/devices/input/KeyboardState.h"

#include <QWPlatform/qwplatform_private.h>

#include <memory>

namespace platform
{

class HeldKeys;
class PendingInput;

/// Asks the X server; on other window systems, remembers from the key events of the application what is held, those
/// included that wait while the main thread is at work.
class QWPLATFORM_TEST_EXPORT LinuxKeyboardState : public KeyboardState
{
public:
    LinuxKeyboardState();
    ~LinuxKeyboardState() override;

    void startWatching() override;
    KeyMap keyMap() override;
    bool isCapsLockOn() override;
    void noteKeyEvent(const QKeyEvent &event) override;
    char16_t characterOf(const QKeyEvent &event) override;

private:
    HeldKeys &_heldKeys();

    std::unique_ptr<HeldKeys> m_heldKeys; ///< Null while X11 is asked.
    std::unique_ptr<PendingInput> m_pendingInput;
};

} // namespace platform

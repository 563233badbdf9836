#include "HeldKeys.h"

#include "QWPlatform/linux/remote/KeyCodes.h"

#include <QCoreApplication>
#include <QKeyEvent>

namespace platform
{

namespace
{
constexpr quint32 lockModifier = 2; ///< The bit of Caps Lock in the native modifiers.
}

HeldKeys::HeldKeys()
{
    if (auto *application = QCoreApplication::instance())
        application->installEventFilter(this);
}

bool HeldKeys::eventFilter(QObject *, QEvent *event)
{
    switch (event->type()) {
    case QEvent::ShortcutOverride: // a key that a shortcut takes sends no KeyPress
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
        note(static_cast<const QKeyEvent &>(*event));
        break;
    case QEvent::ApplicationStateChange: // releases that happen elsewhere are never told
        m_map = {};
        break;
    default:
        break;
    }
    return false;
}

void HeldKeys::note(const QKeyEvent &key)
{
    // Qt repeats a KeyPress that a program sent as a ShortcutOverride, without its scan code.
    const bool isCopy = key.type() == QEvent::ShortcutOverride && key.nativeScanCode() == 0;
    const auto code = codeOfKey(key.nativeScanCode(), key.key());
    if (code && !isCopy && !key.isAutoRepeat())
        setKeyDown(m_map, *code, key.type() != QEvent::KeyRelease);
    if (key.nativeScanCode() != 0 && !key.isAutoRepeat())
        _noteCapsLock(key);
}

/// The modifiers of an event are those from before it. A second press unlocks, but only when the key comes up again.
void HeldKeys::_noteCapsLock(const QKeyEvent &key)
{
    const bool wasOn = key.nativeModifiers() & lockModifier;
    if (key.key() != Qt::Key_CapsLock) {
        m_isCapsLockOn = wasOn;
    } else if (key.type() == QEvent::KeyRelease) {
        m_isCapsLockOn = !m_wasCapsLockOn;
    } else {
        m_wasCapsLockOn = wasOn;
        m_isCapsLockOn = true;
    }
}

} // namespace platform

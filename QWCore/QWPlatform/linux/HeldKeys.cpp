#include "HeldKeys.h"

#include "KeyCodes.h"

#include <QCoreApplication>
#include <QKeyEvent>

namespace platform
{

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
}

} // namespace platform

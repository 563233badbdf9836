#include "HeldKeys.h"

#include "KeyCodes.h"

#include <QCoreApplication>
#include <QKeyEvent>

namespace platform {

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
    case QEvent::KeyRelease: {
        const auto &key = static_cast<const QKeyEvent &>(*event);
        const auto code = codeOfKey(key.nativeScanCode(), key.key());
        if (code && !key.isAutoRepeat())
            setKeyDown(m_map, *code, event->type() != QEvent::KeyRelease);
        break;
    }
    case QEvent::ApplicationStateChange: // releases that happen elsewhere are never told
        m_map = {};
        break;
    default:
        break;
    }
    return false;
}

} // namespace platform

#include "KeyboardShortcutsExtensions.h"

#include "KeyPressTracker.h"
#include "QWKeyboardShortcuts.h"

#include <QWBase/QWApplication.h>
#include <QWPlatform/System.h>
#include <QWPlatform/devices/KeyboardState.h>

#include <QKeyEvent>
#include <QThread>

namespace
{
using Sight = qw::KeyPressTracker::Sight;

bool isConsumed(QObject &receiver, const QKeyEvent &event)
{
    static qw::KeyPressTracker tracker;
    const Sight sight = tracker.see(receiver, event);
    if (sight != Sight::First)
        return sight == Sight::Consumed;
    const bool consumed = QWKeyboardShortcuts::performShortcut(event);
    tracker.judged(receiver, event, consumed);
    return consumed;
}
} // namespace

bool KeyboardShortcutsExtensions::sendEvent(QWApplication &application, QObject *receiver, QEvent *event)
{
    if (!platform::KeyEvent::concerns(*event) || QThread::currentThread() != application.thread())
        return false;
    const auto &key = static_cast<const QKeyEvent &>(*event);
    platform::System::current().keyboardState().noteKeyEvent(key);
    if (!isConsumed(*receiver, key))
        return false;
    event->accept(); // a question that is accepted asks no QAction
    return true;
}

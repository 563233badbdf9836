#include "KeyboardShortcutsExtensions.h"

#include "KeyPressTracker.h"
#include "QWUtilities/shortcuts/QWKeyboardShortcuts.h"
#include "QWUtilities/shortcuts/menus/MainMenuItems.h"

#include <QWBase/QWApplication.h>
#include <QWPlatform/System.h>
#include <QWPlatform/appkit/ResponderChain.h>
#include <QWPlatform/devices/input/KeyboardState.h>
#include <QWPlatform/machine/SystemServices.h>

#include <QKeyEvent>
#include <QMenuBar>
#include <QThread>

namespace qw
{

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

/// Gives the items of @p bar their keys and actions, as loading gives them to all windows that there are then: it may
/// be younger, or have got its menus since.
void menuBarWillShow(const QMenuBar &bar)
{
    const auto *const registry = platform::System::current().sharedIfMade<QWKeyboardShortcuts>();
    if (!registry)
        return;
    const MainMenuItems::Batch batch(bar);
    for (const auto &group : registry->groups())
        group->refreshMenu();
}

/// A bar shows with its window, or comes into one that shows already.
void menusWillShow(const QObject &receiver)
{
    const auto *const widget = qobject_cast<const QWidget *>(&receiver);
    if (!widget)
        return;
    const auto *const bar = qobject_cast<const QMenuBar *>(widget);
    if (const QMenuBar *const shown = bar || !widget->isWindow() ? bar : platform::menuBarOf(widget))
        menuBarWillShow(*shown);
}
} // namespace

bool KeyboardShortcutsExtensions::sendEvent(QWApplication &application, QObject *receiver, QEvent *event)
{
    if (event->type() == QEvent::Show && !event->spontaneous())
        menusWillShow(*receiver);
    if (!platform::KeyEvent::concerns(*event) || QThread::currentThread() != application.thread())
        return false;
    const auto &key = static_cast<const QKeyEvent &>(*event);
    platform::SystemServices::current().keyboardState->noteKeyEvent(key);
    if (!isConsumed(*receiver, key))
        return false;
    event->accept(); // a question that is accepted asks no QAction
    return true;
}

} // namespace qw

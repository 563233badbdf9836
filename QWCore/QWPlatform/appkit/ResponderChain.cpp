#include "ResponderChain.h"

#include "Panel.h"

#include <QAction>
#include <QApplication>
#include <QHash>
#include <QMenuBar>
#include <QPointer>
#include <QWidget>
#include <QWindow>

namespace platform
{

namespace
{
constexpr qsizetype usualLength = 16;

/// By object. Not a property of it, since finding one by name takes a walk through all of a widget's own.
QHash<const QObject *, QPointer<QObject>> &delegates()
{
    static auto &table = *new QHash<const QObject *, QPointer<QObject>>; // never destroyed: objects outlive statics
    return table;
}

/// The window that was last active of those that can be main.
QPointer<QWidget> lastMainWindow;

QWidget *widgetOf(const QWindow *window)
{
    const QWidgetList widgets = QApplication::topLevelWidgets();
    const auto found =
        std::find_if(widgets.begin(), widgets.end(), [&](QWidget *w) { return w->windowHandle() == window; });
    return found == widgets.end() ? nullptr : *found;
}

/// Panels never are, and neither is a window without title bar, such as a splash screen.
bool canBeMain(const QWidget *window)
{
    const bool isBorderless = window->windowFlags() & Qt::FramelessWindowHint;
    return window->windowType() == Qt::Window && !isBorderless && !isPanel(window);
}

void noteActiveWindow(QWindow *window)
{
    QWidget *const widget = window ? widgetOf(window) : nullptr;
    if (widget && canBeMain(widget))
        lastMainWindow = widget;
}

void watchActiveWindows()
{
    if (auto *application = qobject_cast<QApplication *>(QCoreApplication::instance()))
        QObject::connect(application, &QGuiApplication::focusWindowChanged, application, noteActiveWindow);
}

void appendWindow(QList<QObject *> &chain, QWidget *window)
{
    QWidget *responder = window->focusWidget() ? window->focusWidget() : window;
    for (; responder != window; responder = responder->parentWidget())
        chain.append(responder);
    chain.append(window);
    chain.append(delegateOf(window));
}

QWidget *firstVisibleMainWindow()
{
    const QWindowList windows = QGuiApplication::topLevelWindows(); // in the order in which they were made
    for (const QWindow *const window : windows) {
        QWidget *const widget = window->isVisible() ? widgetOf(window) : nullptr;
        if (widget && canBeMain(widget))
            return widget;
    }
    return nullptr;
}

QList<QMenuBar *> barsOfWindows()
{
    QList<QMenuBar *> bars;
    const QWidgetList widgets = QApplication::topLevelWidgets();
    for (const QWidget *widget : widgets)
        bars.append(menuBarOf(widget));
    bars.removeAll(nullptr);
    return bars;
}

bool send(QObject *receiver, const Selector &action, QObject *sender)
{
    return action.argumentCount() == 0 ? perform(receiver, action) : perform<QObject *>(receiver, action, sender);
}
} // namespace

Q_COREAPP_STARTUP_FUNCTION(watchActiveWindows)

QWidget *keyWindow()
{
    return QApplication::activeWindow();
}

QWidget *mainWindow()
{
    if (lastMainWindow && lastMainWindow->isVisible())
        return lastMainWindow;
    return firstVisibleMainWindow();
}

QMenuBar *mainMenuBar()
{
    if (QMenuBar *const bar = menuBarOf(keyWindow()))
        return bar;
    if (QMenuBar *const bar = menuBarOf(mainWindow()))
        return bar;
    return barsOfWindows().value(0);
}

QMenuBar *menuBarOf(const QWidget *window)
{
    if (!window || window->windowType() == Qt::Popup) // menus are windows too, and there may be thousands
        return nullptr;
    QMenuBar *const first = window->findChild<QMenuBar *>();
    if (!first || first->window() == window)
        return first;
    const QList<QMenuBar *> bars = window->findChildren<QMenuBar *>(); // of windows that are children of this one too
    const auto own = std::find_if(bars.begin(), bars.end(), [&](QMenuBar *bar) { return bar->window() == window; });
    return own == bars.end() ? nullptr : *own;
}

QList<QMenuBar *> menuBars()
{
    QList<QMenuBar *> bars{mainMenuBar()};
    bars.removeAll(nullptr);
    for (QMenuBar *const bar : barsOfWindows()) {
        if (bar != bars.value(0))
            bars.append(bar);
    }
    return bars;
}

void setDelegate(QObject *object, QObject *delegate)
{
    if (!delegates().contains(object))
        QObject::connect(object, &QObject::destroyed, [](const QObject *gone) { delegates().remove(gone); });
    delegates().insert(object, delegate);
}

QObject *delegateOf(const QObject *object)
{
    return delegates().value(object).data();
}

QList<QObject *> responderChain()
{
    QList<QObject *> chain;
    chain.reserve(usualLength);
    QWidget *const key = keyWindow();
    if (key)
        appendWindow(chain, key);
    QWidget *const main = mainWindow();
    if (main && main != key && (!key || !canBeMain(key)))
        appendWindow(chain, main);
    chain.append(QCoreApplication::instance());
    chain.append(delegateOf(QCoreApplication::instance()));
    chain.removeAll(nullptr);
    return chain;
}

QObject *targetForAction(const Selector &action, QObject *target)
{
    if (target)
        return respondsTo(target, action) ? target : nullptr;
    const QList<QObject *> chain = responderChain();
    const auto found = std::find_if(chain.begin(), chain.end(), [&](QObject *r) { return respondsTo(r, action); });
    return found == chain.end() ? nullptr : *found;
}

bool sendAction(const Selector &action, QObject *target, QObject *sender)
{
    QObject *const receiver = targetForAction(action, target);
    return receiver && send(receiver, action, sender);
}

bool validateMenuItem(QObject *target, QAction *item)
{
    return target && performReturning<bool, QAction *>(target, "validateMenuItem:", item).value_or(true);
}

} // namespace platform

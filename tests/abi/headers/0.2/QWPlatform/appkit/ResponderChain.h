#pragma once

#include "Selector.h"

#include <QWPlatform/qwplatform_export.h>

#include <QList>

class QAction;
class QMenuBar;
class QWidget;

namespace platform
{

/// The window that keys go to, or null.
QWPLATFORM_EXPORT QWidget *keyWindow();

/// The window that was last active, while it shows; panels and windows without title bar are never main. Or null.
QWPLATFORM_EXPORT QWidget *mainWindow();

/// The menu bar of the key window, else of the main window, else of the first window that has one; or null.
QWPLATFORM_EXPORT QMenuBar *mainMenuBar();

/// The menu bar of @p window, or null.
QWPLATFORM_EXPORT QMenuBar *menuBarOf(const QWidget *window);

/// Those of all windows, whether they show or not; mainMenuBar() first.
QWPLATFORM_EXPORT QList<QMenuBar *> menuBars();

/// Who is asked after @p object, a window or the application. Not owned; ends with either of the two. Main thread.
QWPLATFORM_EXPORT void setDelegate(QObject *object, QObject *delegate);
QWPLATFORM_EXPORT QObject *delegateOf(const QObject *object); ///< As set; null for none, and once it has gone.

/// Who is asked to take an action, in order: focus widget, its parents, its window, the window's delegate; when the key
/// window cannot be main, or there is none, the same of the main window; the application, its delegate.
QWPLATFORM_EXPORT QList<QObject *> responderChain();

/// Who receives @p action: @p target when it responds, for a null target the first of the chain that does; or null.
QWPLATFORM_EXPORT QObject *targetForAction(const Selector &action, QObject *target = nullptr);

/// Sends @p action to targetForAction(); false when nobody takes it. @p sender may be gone afterwards.
QWPLATFORM_EXPORT bool sendAction(const Selector &action, QObject *target, QObject *sender);

/// Whether @p item, which would be received by @p target, is enabled: no without a target; what its
/// `Q_INVOKABLE bool validateMenuItem(QAction *item)` says when it has one; else yes.
QWPLATFORM_EXPORT bool validateMenuItem(QObject *target, QAction *item);

} // namespace platform

#pragma once

#include <QWPlatform/appkit/KeyEvent.h>
#include <QWUtilities/qwutilities_private.h>

#include <QString>

#include <memory>

class QMenu;
class QWidget;
class QWKeyboardShortcuts;

namespace qw
{

/// What the registry needs of the editor's windows. Main thread.
class QWUTILITIES_SHARED_EXPORT ShortcutEditor
{
public:
    virtual ~ShortcutEditor();

    /// The editor of @p registry, which owns it; null until its windows are first wanted.
    static ShortcutEditor *of(const QWKeyboardShortcuts &registry);

    /// In place of the editor that @p registry has; null: the next opening makes one.
    static void setOf(const QWKeyboardShortcuts &registry, std::unique_ptr<ShortcutEditor> editor);

    /// Brings the editor's window to the front and makes it key.
    virtual void open() = 0;

    /// Closes the window as its close button does when it is key, else opens it.
    virtual void toggle() = 0;

    virtual QWidget *window() const = 0;

    /// A file panel on the editor's window has gone: the window is key again, if it is up.
    virtual void filePanelDidEnd() = 0;

    /// The sheet that captures keys; while it is visible, doSetShortcut() gets every key and modifier change that the
    /// filter lets through.
    virtual QWidget *setShortcutPanel() const = 0;
    virtual void doSetShortcut(const platform::KeyEvent &event) = 0;

    virtual QString searchString() const = 0;
    virtual void clearSearchString() = 0;

    /// The registry's displayResults() are new; those shown before may be gone.
    virtual void displayResultsDidChange() = 0;

    /// Six fixed items, then one for each preset.
    virtual QMenu *presetsMenu() const = 0;

    /// As typed in the save sheet.
    virtual QString presetName() const = 0;
};

} // namespace qw

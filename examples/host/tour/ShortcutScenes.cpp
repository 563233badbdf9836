#include "ShortcutScenes.h"

#include <QWPlatform/System.h>
#include <QWPlatform/appkit/MenuItem.h>
#include <QWPlatform/foundation/UserDefaults.h>
#include <QWUtilities/shortcuts/QWKeyboardShortcuts.h>
#include <QWUtilities/shortcuts/editor/ShortcutEditor.h>

#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QTreeView>

namespace demo
{

namespace
{
constexpr auto frameKey = "Keyboard Shortcuts Frame";
constexpr QRect frame(560, 160, 420, 560); // with room for the sheets at both sides
QVariant frameBefore;                      ///< The user's own, which comes back after the pictures.

qw::ShortcutEditor *editor()
{
    return qw::ShortcutEditor::of(QWKeyboardShortcuts::sharedInstance());
}

QWidget *editorWindow(DemoApplication &)
{
    return editor() ? editor()->window() : nullptr;
}

QWidget *captureSheet(DemoApplication &)
{
    return editor() ? editor()->setShortcutPanel() : nullptr;
}

QWidget *saveSheet(DemoApplication &)
{
    for (QWidget *window : QApplication::topLevelWidgets()) {
        if (window->objectName() == "saveShortcutPanel")
            return window;
    }
    return nullptr;
}

QTreeView *outline()
{
    return editor() && editor()->window() ? editor()->window()->findChild<QTreeView *>() : nullptr;
}

void pressAndRelease(QObject *receiver, int key, Qt::KeyboardModifiers modifiers = {}, const QString &text = {})
{
    QKeyEvent press(QEvent::KeyPress, key, modifiers, text);
    QKeyEvent release(QEvent::KeyRelease, key, modifiers, text);
    QCoreApplication::sendEvent(receiver, &press);
    QCoreApplication::sendEvent(receiver, &release);
}

void search(const QString &text)
{
    auto *field = editor()->window()->findChild<QLineEdit *>("searchText");
    field->selectAll();
    field->insert(text);
}

QModelIndex indexOf(const QString &name)
{
    const QAbstractItemModel &model = *outline()->model();
    for (int column = 0; column < model.columnCount(); ++column) {
        const QModelIndexList found = model.match(model.index(0, column), Qt::DisplayRole, name, 1,
                                                  Qt::MatchExactly | Qt::MatchRecursive | Qt::MatchWrap);
        if (!found.isEmpty())
            return found.first();
    }
    return {};
}

void open(DemoApplication &)
{
    frameBefore = platform::System::current().userDefaults().object(frameKey);
    QWKeyboardShortcuts::openPanel();
    if (!outline())
        return;
    editor()->window()->setGeometry(frame);
    outline()->expand(indexOf("Transport"));
    outline()->expand(indexOf("Chain"));
    outline()->setCurrentIndex(indexOf("Play or Stop"));
    outline()->setFocus();
}

void searchForLevels(DemoApplication &)
{
    search("sele");
}

void beginCapture(DemoApplication &)
{
    search({});
    outline()->expand(indexOf("Transport"));
    outline()->setCurrentIndex(indexOf("Play Selection"));
    outline()->setFocus();
    pressAndRelease(outline(), Qt::Key_Return, {}, "\r");
    pressAndRelease(editor()->setShortcutPanel(), Qt::Key_G, Qt::ControlModifier | Qt::ShiftModifier);
}

void captureKeyInUse(DemoApplication &)
{
    pressAndRelease(editor()->setShortcutPanel(), Qt::Key_Z, Qt::ControlModifier);
}

void endCapture(DemoApplication &)
{
    for (int i = 0; i < 2; ++i)
        pressAndRelease(editor()->setShortcutPanel(), Qt::Key_Escape, {}, "\x1b");
}

void beginSave(DemoApplication &application)
{
    for (QAction *item : editor()->presetsMenu()->actions()) {
        auto *command = qobject_cast<platform::MenuItem *>(item);
        if (command && command->action() == platform::Selector("saveShortcuts:"))
            command->trigger();
    }
    if (QWidget *sheet = saveSheet(application))
        sheet->findChild<QLineEdit *>("saveShortcutText")->insert("Editing at Night");
}

void closeAll(DemoApplication &application)
{
    if (QWidget *sheet = saveSheet(application))
        sheet->close();
    if (editor() && editor()->window())
        editor()->window()->close();
    platform::UserDefaults &defaults = platform::System::current().userDefaults();
    frameBefore.isValid() ? defaults.setObject(frameKey, frameBefore) : defaults.removeObject(frameKey);
}
} // namespace

std::span<const WindowStep::Window> shortcutScenes()
{
    using Window = WindowStep::Window;
    static const Window scenes[] = {
        {.name = "shortcuts", .open = open, .window = editorWindow, .onBackdrop = true},
        {.name = "shortcuts-search", .open = searchForLevels, .window = editorWindow, .onBackdrop = true},
        {.name = "shortcut-capture",
         .open = beginCapture,
         .window = editorWindow,
         .onBackdrop = true,
         .sheet = captureSheet},
        {.name = "shortcut-capture-conflict",
         .open = captureKeyInUse,
         .window = editorWindow,
         .close = endCapture,
         .onBackdrop = true,
         .sheet = captureSheet},
        {.name = "shortcut-save-preset",
         .open = beginSave,
         .window = editorWindow,
         .close = closeAll,
         .onBackdrop = true,
         .sheet = saveSheet},
    };
    return scenes;
}

} // namespace demo

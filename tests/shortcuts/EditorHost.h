#pragma once

#include "ShortcutHost.h"

#include <QWPlatform/foundation/UserDefaults.h>
#include <QWUtilities/shortcuts/editor/ShortcutEditor.h>
#include <QWUtilities/shortcuts/editor/ShortcutOutlineModel.h>

#include <QApplication>
#include <QTest>
#include <QTreeView>
#include <QWindow>

/// A host whose editor is open, in front and key.
class EditorHost
{
public:
    static constexpr quint32 shift = 0x20000;
    static constexpr quint32 control = 0x40000;
    static constexpr quint32 option = 0x80000;
    static constexpr quint32 command = 0x100000;
    using Column = qw::ShortcutOutlineModel::Column;

    /// Transport: Play P, Stop S (disabled), Record without a key. Edit, a menu: Cut ⌘X, a submenu's Mérge ⇧⌘M.
    static QVariantList sampleGroups()
    {
        QVariantMap stop = shortcutState("Stop", "stop:", 's');
        stop["enabled"] = false;
        return {groupState("Transport", {shortcutState("Play", "play:", 'p', 0, 1), stop,
                                         shortcutState("Record", "save:", 0, 0, 2)}),
                groupState("Edit",
                           {shortcutState("Cut", "save:", 'x', command, 3),
                            shortcutState("Paste Special>Mérge", "save:", 'm', shift | command, 4)},
                           true)};
    }

    explicit EditorHost(const QVariantList &groups = sampleGroups(), const QVariantMap &defaults = {})
        : system(groups)
    {
        for (auto entry = defaults.begin(); entry != defaults.end(); ++entry)
            system.userDefaults().setObject(entry.key(), entry.value());
        QWKeyboardShortcuts::loadShortcuts();
    }

    ~EditorHost() { system.releaseShared(); }

    /// Opens the editor; false when its window does not become key.
    bool open() const
    {
        QWKeyboardShortcuts::openPanel();
        return window() && becomesKey(*window());
    }

    /// QTest's own wait is content with a window that a sheet is attached to.
    static bool becomesKey(const QWidget &window)
    {
        return QTest::qWaitFor([&] { return QApplication::activeWindow() == &window; });
    }

    QWKeyboardShortcuts &registry() const { return QWKeyboardShortcuts::sharedInstance(); }
    qw::ShortcutEditor *editor() const { return qw::ShortcutEditor::of(registry()); }
    QWidget *window() const { return editor() ? editor()->window() : nullptr; }
    QWidget *sheet() const { return editor()->setShortcutPanel(); }

    /// The outlet named @p name.
    template <class T>
    T *outlet(const char *name) const
    {
        return window()->findChild<T *>(name);
    }

    QTreeView *outline() const { return outlet<QTreeView>("shortcutsTable"); }
    QAbstractItemModel *model() const { return outline()->model(); }

    QModelIndex group(int row, int column = Column::Name) const { return model()->index(row, column); }
    QModelIndex shortcut(int group, int row, int column = Column::Name) const
    {
        return model()->index(row, column, this->group(group));
    }

    std::shared_ptr<QWShortcut> at(int group, int row) const
    {
        return registry().groups().at(std::size_t(group))->shortcuts().at(std::size_t(row));
    }

    /// Double-clicks the row; false when no sheet comes up and becomes key.
    bool edit(int group, int row) const
    {
        outline()->expandAll();
        const QModelIndex index = shortcut(group, row);
        outline()->scrollTo(index);
        const QPoint place = outline()->visualRect(index).center();
        QTest::mouseClick(outline()->viewport(), Qt::LeftButton, {}, place);
        QTest::mouseDClick(outline()->viewport(), Qt::LeftButton, {}, place);
        return sheet()->isVisible() && becomesKey(*sheet());
    }

    /// Keys as from the window system, to the key window.
    static void type(Qt::Key key, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::keyClick(QApplication::activeWindow()->windowHandle(), key, modifiers);
    }
    static void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::keyPress(QApplication::activeWindow()->windowHandle(), key, modifiers);
    }
    static void release(Qt::Key key, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::keyRelease(QApplication::activeWindow()->windowHandle(), key, modifiers);
    }

    QVariant stored(const char *key) const { return system.userDefaults().object(key); }

    ShortcutSystem system;
    ShortcutReceiver receiver;
};

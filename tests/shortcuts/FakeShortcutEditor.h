#pragma once

#include <QWPlatform/appkit/MenuItem.h>
#include <QWUtilities/shortcuts/QWKeyboardShortcuts.h>
#include <QWUtilities/shortcuts/editor/ShortcutEditor.h>

#include <QMenu>

/// An editor without windows.
class FakeShortcutEditor : public qw::ShortcutEditor
{
public:
    FakeShortcutEditor()
    {
        for (int i = 0; i < 6; ++i)
            platform::addMenuItem(menu, QString("Command %1").arg(i));
    }

    void open() override { ++opened; }
    void toggle() override {}
    QWidget *window() const override { return nullptr; }
    void filePanelDidEnd() override {}
    QWidget *setShortcutPanel() const override { return nullptr; }
    void doSetShortcut(const platform::KeyEvent &) override {}
    QString searchString() const override { return search; }
    void clearSearchString() override { search.clear(); }
    void displayResultsDidChange() override { ++reloads; }
    QMenu *presetsMenu() const override { return &menu; }
    QString presetName() const override { return name; }

    QStringList presetTitles() const
    {
        QStringList titles;
        for (const QAction *const item : menu.actions().mid(6))
            titles.append(platform::titleOf(*item));
        titles.sort();
        return titles;
    }

    QAction *preset(const QString &title) const
    {
        for (QAction *const item : menu.actions()) {
            if (platform::titleOf(*item) == title)
                return item;
        }
        return nullptr;
    }

    mutable QMenu menu;
    QString search;
    QString name;
    int opened = 0;
    int reloads = 0;
};

/// Gives @p registry an editor, which it owns.
inline FakeShortcutEditor &addEditor(const QWKeyboardShortcuts &registry)
{
    auto editor = std::make_unique<FakeShortcutEditor>();
    FakeShortcutEditor &fake = *editor;
    qw::ShortcutEditor::setOf(registry, std::move(editor));
    return fake;
}

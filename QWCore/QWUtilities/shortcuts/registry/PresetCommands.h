#pragma once

#include <QObject>

class QWKeyboardShortcuts;

namespace qw
{

class ShortcutEditor;
class ShortcutFolder;
class WriteFailures;

/// What the presets menu and its sheet do: takes presets into use, makes them, imports and exports. Asks the user where
/// something would be lost. Main thread.
class PresetCommands : public QObject
{
public:
    /// All outlive this.
    PresetCommands(QWKeyboardShortcuts &registry, ShortcutFolder &folder, const WriteFailures &failures);

    /// Replaces the menu's items behind the fixed ones by those of the presets there are; nothing without an editor.
    void buildMenu();

    /// Of the preset that the title of @p sender, a menu item, names; nothing for any other sender.
    void load(QObject *sender);
    void loadFactory();

    /// What the file panels lead to comes when they close, unless this has gone by then.
    void exportChanges();
    void import();

    /// 1 saves a preset under the name typed.
    void saveSheetDidEnd(int returnCode);

private:
    ShortcutEditor *_editor() const; ///< Or null.
    void _currentShortcutsDidChange();
    void _importPanelDidEnd(int code, const QString &path);
    void _exportPanelDidEnd(int code, const QString &path);

    QWKeyboardShortcuts &m_registry;
    ShortcutFolder &m_folder;
    const WriteFailures &m_failures;
};

} // namespace qw

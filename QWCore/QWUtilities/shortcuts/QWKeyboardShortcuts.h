#pragma once

#include "QWShortcutGroup.h"

#include <QWPlatform/appkit/KeyEvent.h>
#include <QWUtilities/qwutilities_export.h>

#include <QObject>
#include <QStringList>

#include <memory>
#include <optional>
#include <vector>

class QEvent;
class QMenuBar;
class QWError;

namespace qw
{
class DefinitionCheck;
class FactoryDefinition;
class ShortcutEditor;
class ShortcutFolder;
class ShortcutIndex;
} // namespace qw

/// The keyboard shortcuts of the host: the factory definition (resource "shortcuts.plist") with the user's changes on
/// top, presets, exchange files, dispatch of key events, and the editor. One per System. Main thread.
///
/// What cannot be read counts as empty. What cannot be written is logged, and told where the host wants it. Nothing is
/// lost: current changes that cannot be read, or that a preset which cannot be read takes the place of, are set aside,
/// and so is a preset that an imported one of its name takes the place of.
class QWUTILITIES_EXPORT QWKeyboardShortcuts : public QObject
{
    Q_OBJECT

public:
    using Groups = std::vector<std::shared_ptr<QWShortcutGroup>>;

    static QWKeyboardShortcuts &sharedInstance();

    /// Start-up: called by the host once its main menu exists. Opens the editor when it was left open.
    static void loadShortcuts();

    static void openPanel();
    static void togglePanel();

    /// Whether a shortcut, or the editor that captures a key, took the event; else it goes its ordinary way. A host
    /// that never asked for the registry has no shortcuts.
    static bool performShortcut(const QEvent &event);

    /// Gives the items of @p bar their keys and actions, as loading gives them to all windows that there are then.
    /// Called whenever a window shows: it may be younger, or have got its menus since.
    static void menuBarWillShow(const QMenuBar &bar);

    ~QWKeyboardShortcuts() override;

    const QString &shortcutsDirectory() const { return m_shortcutsDirectory; }
    const QString &currentShortcutsPath() const { return m_currentShortcutsPath; }

    /// In factory order. Each reload makes new groups and shortcuts.
    const Groups &groups() const { return m_groups; }

    /// What the editor lists: all groups, or groups of those shortcuts that match its search.
    const Groups &displayResults() const { return m_displayResults; }

    /// The first in group order, or null; also for no key.
    std::shared_ptr<QWShortcut> shortcutWithKey(const std::optional<QWShortcutKey> &key) const;
    std::shared_ptr<QWShortcut> shortcutWithActionTag(const platform::Selector &action, qint32 tag) const;

    /// Whether an alert tells the user that shortcuts or a preset could not be written; not at first. The log says it
    /// in any case.
    void setAlertsFailures(bool alerts) { m_alertsFailures = alerts; }

    /// Reads everything anew.
    void loadCurrentShortcuts();

    /// States of the shortcuts whose keys differ from those of the factory definition.
    QVariantList changedShortcuts() const;

    /// Keeps the changes; after every edit.
    void saveToDefaults();

    void reloadDisplay();
    void buildPresetsMenu();

    /// Names of the presets, in the order of the folder.
    QStringList presets() const;

    /// Sent by a preset's menu item: its title names the preset.
    Q_INVOKABLE void loadPreset(QObject *sender);
    Q_INVOKABLE void loadFactoryPreset(QObject *sender); ///< Asks, then resets.
    Q_INVOKABLE void exportShortcuts(QObject *sender);
    Q_INVOKABLE void loadShortcuts(QObject *sender); ///< Imports an exchange file as a preset.

    /// The editor's save sheet was closed; 1 saves a preset under the name typed.
    void saveShortcutPanelDidEnd(int returnCode);

    bool doShortcut(const platform::KeyEvent &event);

    /// The editor's windows; null until they are made.
    qw::ShortcutEditor *editor() const { return m_editor.get(); }
    void setEditor(std::unique_ptr<qw::ShortcutEditor> editor);

protected:
    QWKeyboardShortcuts();

private:
    void _openPanel();
    void _togglePanel();
    void _makeEditor();
    bool _performShortcut(const QEvent &event);
    QWidget *_setShortcutPanel() const;
    Groups _factoryGroups() const;
    void _applyChange(const QVariantMap &state);
    void _currentShortcutsDidChange();
    bool _mayReplace(const QString &name) const;
    void _importPanelDidEnd(int code, const QString &path);
    void _exportPanelDidEnd(int code, const QString &path);
    void _tell(const QWError &error) const;

    bool m_alertsFailures = false;
    QString m_shortcutsDirectory;
    QString m_currentShortcutsPath;
    Groups m_groups;
    Groups m_displayResults;
    std::unique_ptr<qw::FactoryDefinition> m_factory;
    std::unique_ptr<qw::DefinitionCheck> m_check;
    std::unique_ptr<qw::ShortcutIndex> m_index;
    std::unique_ptr<qw::ShortcutFolder> m_folder;
    std::unique_ptr<qw::ShortcutEditor> m_editor;
};

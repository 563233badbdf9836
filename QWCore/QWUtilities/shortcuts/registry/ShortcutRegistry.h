#pragma once

#include "PresetCommands.h"
#include "QWUtilities/shortcuts/QWKeyboardShortcuts.h"
#include "QWUtilities/shortcuts/editor/ShortcutEditor.h"
#include "QWUtilities/shortcuts/files/DefinitionCheck.h"
#include "QWUtilities/shortcuts/files/FactoryDefinition.h"
#include "QWUtilities/shortcuts/files/ShortcutFolder.h"
#include "QWUtilities/shortcuts/model/ShortcutIndex.h"
#include "WriteFailures.h"

/// The shortcuts that there are, what the user changed about them, and the editor that shows them.
class Q_DECL_HIDDEN QWKeyboardShortcuts::Private
{
public:
    /// @p owner outlives this.
    explicit Private(QWKeyboardShortcuts &owner);

    std::shared_ptr<QWShortcut> shortcutWithKey(const std::optional<QWShortcutKey> &key);
    void loadCurrentShortcuts();
    QVariantList changedShortcuts();
    void saveToDefaults();
    void reloadDisplay();
    bool doShortcut(const platform::KeyEvent &event);
    void _openPanel();
    void _togglePanel();
    bool _performShortcut(const QEvent &event);

    QString m_shortcutsDirectory;
    QString m_currentShortcutsPath;
    Groups m_groups;
    Groups m_displayResults;
    qw::FactoryDefinition m_factory;
    qw::DefinitionCheck m_check;
    qw::ShortcutIndex m_index;
    qw::ShortcutFolder m_folder;
    qw::WriteFailures m_failures;
    qw::PresetCommands m_presets;
    std::unique_ptr<qw::ShortcutEditor> m_editor; ///< Null until its windows are wanted.

private:
    void _makeEditor();
    QWidget *_setShortcutPanel() const;
    Groups _factoryGroups();
    void _applyChange(const QVariantMap &state);

    QWKeyboardShortcuts &m_owner;
};

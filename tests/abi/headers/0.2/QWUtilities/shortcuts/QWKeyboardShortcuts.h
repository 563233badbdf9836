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

namespace qw
{
class ShortcutEditor;
}

/// The keyboard shortcuts of the host: the factory definition with the user's changes on top, presets, exchange files,
/// dispatch of key events, and the editor. One per System. Main thread.
///
/// The factory definition is the host's resource "shortcuts.plist", an array of dictionaries, one for each group; see
/// QWShortcutGroup::state(). It alone says which shortcuts there are. Changes, presets ("<name>.plist" in
/// shortcutsDirectory()) and exchange files ("*.qwshortcuts") are arrays of what QWShortcut::state() gives, for those
/// whose keys differ from the definition's.
///
/// What cannot be read counts as empty. What cannot be written is logged, and told where the host wants it. Nothing is
/// lost: current changes that cannot be read, or that a preset which cannot be read takes the place of, are set aside,
/// and so is a preset that an imported one of its name takes the place of.
class QWUTILITIES_EXPORT QWKeyboardShortcuts : public QObject
{
    Q_OBJECT

public:
    /// Groups in order; shared with whoever keeps one, but no longer those in use after a reload.
    using Groups = std::vector<std::shared_ptr<QWShortcutGroup>>;

    /// The one object of the current System, made on first use.
    static QWKeyboardShortcuts &sharedInstance();

    /// Start-up: called by the host once its main menu exists. Opens the editor when it was left open.
    static void loadShortcuts();

    /// Brings the editor to the front and makes it key.
    static void openPanel();

    /// Closes the editor when it is key, else opens it.
    static void togglePanel();

    /// Whether a shortcut, or the editor that captures a key, took the event; else it goes its ordinary way. A host
    /// that never asked for the registry has no shortcuts. QWApplication asks for each event by itself.
    static bool performShortcut(const QEvent &event);

    /// Closes the editor without a word to anybody.
    ~QWKeyboardShortcuts() override;

    /// Folder of the changes and presets, a real path: "Keyboard Shortcuts" in QWApplication::supportDirectory().
    const QString &shortcutsDirectory() const;

    /// File of the user's changes, "_current.plist" in that folder.
    const QString &currentShortcutsPath() const;

    /// In factory order. Each reload makes new groups and shortcuts.
    const Groups &groups() const;

    /// What the editor lists: all groups, or groups of those shortcuts that match its search.
    const Groups &displayResults() const;

    /// The first in group order, or null; also for no key.
    std::shared_ptr<QWShortcut> shortcutWithKey(const std::optional<QWShortcutKey> &key) const;

    /// The first in group order, or null.
    std::shared_ptr<QWShortcut> shortcutWithActionTag(const platform::Selector &action, qint32 tag) const;

    /// Whether an alert tells the user that shortcuts or a preset could not be written; not at first. The log says it
    /// in any case.
    void setAlertsFailures(bool alerts);

    /// Reads everything anew.
    void loadCurrentShortcuts();

    /// States of the shortcuts whose keys differ from those of the factory definition, in its order.
    QVariantList changedShortcuts() const;

    /// Keeps the changes; to be called after every edit.
    void saveToDefaults();

    /// Makes displayResults() anew, and has the editor show them.
    void reloadDisplay();

    /// Puts presets() behind the fixed items of the editor's menu; nothing while there is no editor.
    void buildPresetsMenu();

    /// Names of the presets, in the order of the folder.
    QStringList presets() const;

    /// Takes a preset into use. Sent by its menu item, a QAction whose title names it; nothing for another sender.
    Q_INVOKABLE void loadPreset(QObject *sender);
    Q_INVOKABLE void loadFactoryPreset(QObject *sender); ///< Asks, then resets. The sender is not looked at.
    Q_INVOKABLE void exportShortcuts(QObject *sender);   ///< Asks where, then writes; likewise.
    Q_INVOKABLE void loadShortcuts(QObject *sender);     ///< Imports an exchange file as a preset; likewise.

    /// The editor's save sheet was closed; 1 saves a preset under the name typed.
    void saveShortcutPanelDidEnd(int returnCode);

    /// What performShortcut() does with a key event that is meant for no text, panel or list: true when it was
    /// captured, sent an action, or was a change of the modifiers.
    bool doShortcut(const platform::KeyEvent &event);

protected:
    /// For sharedInstance(), which makes the one there is.
    QWKeyboardShortcuts();

private:
    friend class qw::ShortcutEditor;

    class Private;
    std::unique_ptr<Private> d;
};

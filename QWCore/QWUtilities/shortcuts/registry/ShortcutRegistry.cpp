#include "ShortcutRegistry.h"

#include "QWUtilities/shortcuts/dispatch/ShortcutFilter.h"
#include "QWUtilities/shortcuts/editor/ShortcutEditorPanel.h"
#include "QWUtilities/shortcuts/menus/MainMenuItems.h"
#include "QWUtilities/shortcuts/search/GroupSearch.h"

#include <QWBase/QWApplication.h>
#include <QWBase/QWError.h>
#include <QWPlatform/System.h>
#include <QWPlatform/foundation/Bundle.h>
#include <QWPlatform/foundation/Locations.h>
#include <QWPlatform/foundation/lists/PropertyListValues.h>

#include <QWidget>

using platform::System;

namespace
{
constexpr auto folderName = "Keyboard Shortcuts";

QString supportDirectory()
{
    const QWApplication *const application = QWApplication::sharedApplication();
    return application ? application->supportDirectory()
                       : System::current().locations().mapped("~/Library/Application Support/Quorwell");
}
} // namespace

QWKeyboardShortcuts::Private::Private(QWKeyboardShortcuts &owner)
    : m_shortcutsDirectory(supportDirectory() + '/' + folderName)
    , m_currentShortcutsPath(m_shortcutsDirectory + "/_current.plist")
    , m_check(m_groups)
    , m_index(m_groups)
    , m_folder(m_shortcutsDirectory, m_currentShortcutsPath)
    , m_presets(owner, m_folder, m_failures)
    , m_owner(owner)
{
    QWError error;
    if (!m_folder.make(&error))
        qw::WriteFailures::log(error); // before anyone could ask for alerts
}

std::shared_ptr<QWShortcut> QWKeyboardShortcuts::Private::shortcutWithKey(const std::optional<QWShortcutKey> &key)
{
    return key ? m_index.shortcutWithKey(*key) : nullptr;
}

void QWKeyboardShortcuts::Private::loadCurrentShortcuts()
{
    m_index.invalidate();
    m_groups = _factoryGroups();
    m_check.checkLater();
    const QVariantList changes = m_folder.current();
    {
        const qw::MainMenuItems::Batch batch;
        for (const auto &group : m_groups)
            group->refreshMenu();
        for (const QVariant &change : changes) {
            if (change.typeId() == QMetaType::QVariantMap)
                _applyChange(change.toMap());
        }
    }
    reloadDisplay();
}

QVariantList QWKeyboardShortcuts::Private::changedShortcuts()
{
    QVariantList changes;
    for (const auto &group : _factoryGroups()) {
        for (const auto &factory : group->shortcuts()) {
            const auto current = m_index.shortcutWithActionTag(factory->action(), factory->tag());
            if (current && current->key() != factory->key())
                changes.append(current->state());
        }
    }
    return changes;
}

void QWKeyboardShortcuts::Private::saveToDefaults()
{
    QWError error;
    if (!m_folder.setCurrent(changedShortcuts(), &error))
        m_failures.tell(error);
}

void QWKeyboardShortcuts::Private::reloadDisplay()
{
    const QString search = m_editor ? m_editor->searchString() : QString();
    m_displayResults.clear();
    for (const auto &group : m_groups) {
        if (const auto shown = search.isEmpty() ? group : qw::matchingPart(*group, search))
            m_displayResults.push_back(shown);
    }
    if (m_editor)
        m_editor->displayResultsDidChange();
}

bool QWKeyboardShortcuts::Private::doShortcut(const platform::KeyEvent &event)
{
    const QWidget *const panel = _setShortcutPanel();
    if (panel && panel->isVisible()) {
        m_editor->doSetShortcut(event);
        return true;
    }
    if (event.type == platform::KeyEvent::FlagsChanged)
        return true; // on purpose: what the filter let through reaches nobody
    const auto shortcut = shortcutWithKey(QWShortcutKey::shortcutKeyForEvent(event));
    return shortcut && shortcut->perform(event);
}

void QWKeyboardShortcuts::Private::_openPanel()
{
    _makeEditor();
    m_editor->open();
}

void QWKeyboardShortcuts::Private::_togglePanel()
{
    _makeEditor();
    m_editor->toggle();
}

void QWKeyboardShortcuts::Private::_makeEditor()
{
    if (!m_editor)
        m_editor = std::make_unique<qw::ShortcutEditorPanel>(m_owner);
}

bool QWKeyboardShortcuts::Private::_performShortcut(const QEvent &event)
{
    const platform::KeyEvent key(event);
    const bool concerns = key.type == platform::KeyEvent::KeyDown || key.type == platform::KeyEvent::FlagsChanged;
    return concerns && !qw::takesItsOrdinaryWay(event, _setShortcutPanel()) && doShortcut(key);
}

QWidget *QWKeyboardShortcuts::Private::_setShortcutPanel() const
{
    return m_editor ? m_editor->setShortcutPanel() : nullptr;
}

/// Read afresh each time, since it says which shortcuts there are.
QWKeyboardShortcuts::Groups QWKeyboardShortcuts::Private::_factoryGroups()
{
    Groups groups;
    for (const QVariant &state :
         m_factory.array(System::current().mainBundle().pathForResource("shortcuts", "plist"))) {
        if (state.typeId() == QMetaType::QVariantMap)
            groups.push_back(QWShortcutGroup::shortcutGroupWithState(state.toMap()));
    }
    return groups;
}

/// Only the action is compared: two shortcuts of one action may share a key. The key itself is cleared, so that the
/// menu item of the shortcut that loses it shows it until its next refresh; both intended.
void QWKeyboardShortcuts::Private::_applyChange(const QVariantMap &state)
{
    QWShortcutKey key;
    key.setState(state);
    const platform::Selector action(state.value("action").toString());
    const auto tag = static_cast<qint32>(platform::integerOf(state.value("tag")));
    const auto holder = shortcutWithKey(key);
    if (holder && holder->action() != action)
        holder->key().clear();
    if (const auto target = m_index.shortcutWithActionTag(action, tag))
        target->setKey(key);
}

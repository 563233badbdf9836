#include "QWKeyboardShortcuts.h"

#include "QWUtilities/shortcuts/dispatch/ShortcutFilter.h"
#include "QWUtilities/shortcuts/editor/ShortcutEditorPanel.h"
#include "QWUtilities/shortcuts/files/DefinitionCheck.h"
#include "QWUtilities/shortcuts/files/FactoryDefinition.h"
#include "QWUtilities/shortcuts/files/PresetNames.h"
#include "QWUtilities/shortcuts/files/ShortcutFiles.h"
#include "QWUtilities/shortcuts/files/ShortcutFolder.h"
#include "QWUtilities/shortcuts/menus/MainMenuItems.h"
#include "QWUtilities/shortcuts/model/ShortcutIndex.h"
#include "QWUtilities/shortcuts/search/GroupSearch.h"

#include <QWBase/QWApplication.h>
#include <QWBase/QWError.h>
#include <QWPlatform/System.h>
#include <QWPlatform/appkit/Alerts.h>
#include <QWPlatform/appkit/FilePanels.h>
#include <QWPlatform/appkit/MenuItem.h>
#include <QWPlatform/foundation/Bundle.h>
#include <QWPlatform/foundation/Localization.h>
#include <QWPlatform/foundation/Locations.h>
#include <QWPlatform/foundation/UserDefaults.h>
#include <QWPlatform/foundation/lists/PropertyListValues.h>

#include <QLoggingCategory>
#include <QMenu>
#include <QPointer>

#include <algorithm>

namespace PresetNames = qw::PresetNames;
namespace ShortcutFiles = qw::ShortcutFiles;
using platform::localized;
using platform::System;

namespace
{
Q_LOGGING_CATEGORY(shortcutsLog, "quorwell.shortcuts")

constexpr auto openKey = "Keyboard Shortcuts Open";
constexpr auto folderName = "Keyboard Shortcuts";
constexpr auto exchangeType = "qwshortcuts";
constexpr auto legacyExchangeType = "tovrshortcuts";
constexpr int fixedPresetItems = 6;

QString supportDirectory()
{
    const QWApplication *const application = QWApplication::sharedApplication();
    return application ? application->supportDirectory()
                       : System::current().locations().mapped("~/Library/Application Support/Quorwell");
}

/// What an exported file is called unless the user says otherwise.
QString exchangeName()
{
    const QWApplication *const application = QWApplication::sharedApplication();
    const QString name = application ? application->name() : QString();
    return name.isEmpty() ? localized("Keyboard Shortcuts") : platform::formatted(localized("%@ Shortcuts"), {name});
}

void log(const QWError &error)
{
    qCWarning(shortcutsLog, "%s %s", qPrintable(error.message()), qPrintable(error.reason()));
}
} // namespace

QWKeyboardShortcuts::QWKeyboardShortcuts()
    : m_shortcutsDirectory(supportDirectory() + '/' + folderName)
    , m_currentShortcutsPath(m_shortcutsDirectory + "/_current.plist")
    , m_factory(std::make_unique<qw::FactoryDefinition>())
    , m_check(std::make_unique<qw::DefinitionCheck>(m_groups))
    , m_index(std::make_unique<qw::ShortcutIndex>(m_groups))
    , m_folder(std::make_unique<qw::ShortcutFolder>(m_shortcutsDirectory, m_currentShortcutsPath))
{
    QWError error;
    if (!m_folder->make(&error))
        log(error); // before anyone could ask for alerts
}

QWKeyboardShortcuts::~QWKeyboardShortcuts() = default;

QWKeyboardShortcuts &QWKeyboardShortcuts::sharedInstance()
{
    return System::current().shared<QWKeyboardShortcuts>([] { return new QWKeyboardShortcuts; });
}

void QWKeyboardShortcuts::loadShortcuts()
{
    sharedInstance().loadCurrentShortcuts();
    if (System::current().userDefaults().boolean(openKey))
        openPanel();
}

void QWKeyboardShortcuts::openPanel()
{
    sharedInstance()._openPanel();
}

void QWKeyboardShortcuts::togglePanel()
{
    sharedInstance()._togglePanel();
}

bool QWKeyboardShortcuts::performShortcut(const QEvent &event)
{
    if (!platform::KeyEvent::concerns(event))
        return false;
    auto *const registry = System::current().sharedIfMade<QWKeyboardShortcuts>();
    return registry && registry->_performShortcut(event);
}

void QWKeyboardShortcuts::menuBarWillShow(const QMenuBar &bar)
{
    const auto *const registry = System::current().sharedIfMade<QWKeyboardShortcuts>();
    if (!registry)
        return;
    const qw::MainMenuItems::Batch batch(bar);
    for (const auto &group : registry->m_groups)
        group->refreshMenu();
}

std::shared_ptr<QWShortcut> QWKeyboardShortcuts::shortcutWithKey(const std::optional<QWShortcutKey> &key) const
{
    return key ? m_index->shortcutWithKey(*key) : nullptr;
}

std::shared_ptr<QWShortcut> QWKeyboardShortcuts::shortcutWithActionTag(const platform::Selector &action,
                                                                       qint32 tag) const
{
    return m_index->shortcutWithActionTag(action, tag);
}

void QWKeyboardShortcuts::loadCurrentShortcuts()
{
    m_index->invalidate();
    m_groups = _factoryGroups();
    m_check->checkLater();
    const QVariantList changes = m_folder->current();
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

QVariantList QWKeyboardShortcuts::changedShortcuts() const
{
    QVariantList changes;
    for (const auto &group : _factoryGroups()) {
        for (const auto &factory : group->shortcuts()) {
            const auto current = shortcutWithActionTag(factory->action(), factory->tag());
            if (current && current->key() != factory->key())
                changes.append(current->state());
        }
    }
    return changes;
}

void QWKeyboardShortcuts::saveToDefaults()
{
    QWError error;
    if (!m_folder->setCurrent(changedShortcuts(), &error))
        _tell(error);
}

void QWKeyboardShortcuts::reloadDisplay()
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

QStringList QWKeyboardShortcuts::presets() const
{
    return m_folder->presets();
}

void QWKeyboardShortcuts::buildPresetsMenu()
{
    QMenu *const menu = m_editor ? m_editor->presetsMenu() : nullptr;
    if (!menu)
        return;
    const QList<QAction *> old = menu->actions().mid(fixedPresetItems);
    for (QAction *const item : old) {
        menu->removeAction(item);
        item->deleteLater(); // it may be the one that is being chosen
    }
    for (const QString &name : presets())
        platform::addMenuItem(*menu, name, "loadPreset:");
}

void QWKeyboardShortcuts::loadPreset(QObject *sender)
{
    const auto *const item = qobject_cast<QAction *>(sender);
    if (!item)
        return;
    QWError error;
    if (!m_folder->usePreset(platform::titleOf(*item), &error))
        _tell(error);
    _currentShortcutsDidChange();
}

void QWKeyboardShortcuts::loadFactoryPreset(QObject *)
{
    const int button = platform::runAlert(
        {localized("Are you sure you want to reset your keyboard shortcuts to the factory defaults?"),
         localized("This action is not undoable."),
         {localized("Reset"), localized("Cancel")}});
    if (button != 0)
        return;
    QWError error;
    if (!m_folder->setCurrent({}, &error))
        _tell(error);
    _currentShortcutsDidChange();
}

void QWKeyboardShortcuts::exportShortcuts(QObject *)
{
    platform::SavePanelRequest request;
    request.window = m_editor ? m_editor->window() : nullptr;
    request.suggestedName = exchangeName();
    request.requiredFileType = exchangeType;
    System::current().filePanels().beginSavePanel(request, [self = QPointer(this)](int code, const QString &path) {
        if (self)
            self->_exportPanelDidEnd(code, path);
    });
}

void QWKeyboardShortcuts::loadShortcuts(QObject *)
{
    platform::OpenPanelRequest request;
    request.window = m_editor ? m_editor->window() : nullptr;
    request.fileTypes = {exchangeType, legacyExchangeType};
    System::current().filePanels().beginOpenPanel(request, [self = QPointer(this)](int code, const QStringList &paths) {
        if (self)
            self->_importPanelDidEnd(code, paths.value(0));
    });
}

void QWKeyboardShortcuts::saveShortcutPanelDidEnd(int returnCode)
{
    constexpr int save = 1;
    if (returnCode != save || !m_editor)
        return;
    QString name = m_editor->presetName();
    if (name.isEmpty() || PresetNames::isHidden(name))
        return; // the save sheet lets no such name through
    name.replace('/', '_');
    if (m_folder->hasPreset(name) && !_mayReplace(name))
        return;
    QWError error;
    if (!m_folder->setPreset(name, changedShortcuts(), &error))
        _tell(error);
    buildPresetsMenu();
}

bool QWKeyboardShortcuts::doShortcut(const platform::KeyEvent &event)
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

void QWKeyboardShortcuts::setEditor(std::unique_ptr<qw::ShortcutEditor> editor)
{
    m_editor = std::move(editor);
}

void QWKeyboardShortcuts::_openPanel()
{
    _makeEditor();
    m_editor->open();
}

void QWKeyboardShortcuts::_togglePanel()
{
    _makeEditor();
    m_editor->toggle();
}

void QWKeyboardShortcuts::_makeEditor()
{
    if (!m_editor)
        m_editor = std::make_unique<qw::ShortcutEditorPanel>(*this);
}

bool QWKeyboardShortcuts::_performShortcut(const QEvent &event)
{
    const platform::KeyEvent key(event);
    const bool concerns = key.type == platform::KeyEvent::KeyDown || key.type == platform::KeyEvent::FlagsChanged;
    return concerns && !qw::takesItsOrdinaryWay(event, _setShortcutPanel()) && doShortcut(key);
}

QWidget *QWKeyboardShortcuts::_setShortcutPanel() const
{
    return m_editor ? m_editor->setShortcutPanel() : nullptr;
}

/// Read afresh each time, since it says which shortcuts there are.
QWKeyboardShortcuts::Groups QWKeyboardShortcuts::_factoryGroups() const
{
    Groups groups;
    for (const QVariant &state :
         m_factory->array(System::current().mainBundle().pathForResource("shortcuts", "plist"))) {
        if (state.typeId() == QMetaType::QVariantMap)
            groups.push_back(QWShortcutGroup::shortcutGroupWithState(state.toMap()));
    }
    return groups;
}

/// Only the action is compared: two shortcuts of one action may share a key. The key itself is cleared, so that the
/// menu item of the shortcut that loses it shows it until its next refresh; both intended.
void QWKeyboardShortcuts::_applyChange(const QVariantMap &state)
{
    QWShortcutKey key;
    key.setState(state);
    const platform::Selector action(state.value("action").toString());
    const auto tag = static_cast<qint32>(platform::integerOf(state.value("tag")));
    const auto holder = shortcutWithKey(key);
    if (holder && holder->action() != action)
        holder->key().clear();
    if (const auto target = shortcutWithActionTag(action, tag))
        target->setKey(key);
}

void QWKeyboardShortcuts::_currentShortcutsDidChange()
{
    if (m_editor)
        m_editor->clearSearchString();
    loadCurrentShortcuts();
}

bool QWKeyboardShortcuts::_mayReplace(const QString &name) const
{
    const QString question = localized("“%@” already exists. Do you want to replace it?");
    const QString consequence = localized("A preset with the same name already exists. Replacing it will overwrite its "
                                          "current contents.");
    return platform::runAlert(
               {platform::formatted(question, {name}), consequence, {localized("Replace"), localized("Cancel")}}) == 0;
}

void QWKeyboardShortcuts::_importPanelDidEnd(int code, const QString &path)
{
    if (m_editor)
        m_editor->filePanelDidEnd();
    if (code != platform::FilePanels::OK)
        return;
    const auto array = ShortcutFiles::readArray(path);
    const QString name = PresetNames::forFile(path);
    if (!array || name.isEmpty())
        return;
    QWError error;
    if (!m_folder->addPreset(name, *array, &error))
        _tell(error);
    buildPresetsMenu();
}

void QWKeyboardShortcuts::_exportPanelDidEnd(int code, const QString &path)
{
    QWError error;
    if (m_editor)
        m_editor->filePanelDidEnd();
    if (code == platform::FilePanels::OK && !ShortcutFiles::writeArray(path, changedShortcuts(), &error))
        _tell(error);
}

void QWKeyboardShortcuts::_tell(const QWError &error) const
{
    log(error);
    if (m_alertsFailures)
        platform::runAlert(
            {localized("The keyboard shortcuts could not be saved."), error.message() + ' ' + error.reason(), {}});
}

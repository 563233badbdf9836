#include "PresetCommands.h"

#include "QWUtilities/shortcuts/QWKeyboardShortcuts.h"
#include "QWUtilities/shortcuts/editor/ShortcutEditor.h"
#include "QWUtilities/shortcuts/files/PresetNames.h"
#include "QWUtilities/shortcuts/files/ShortcutFiles.h"
#include "QWUtilities/shortcuts/files/ShortcutFolder.h"
#include "WriteFailures.h"

#include <QWBase/QWApplication.h>
#include <QWBase/QWError.h>
#include <QWPlatform/System.h>
#include <QWPlatform/appkit/Alerts.h>
#include <QWPlatform/appkit/FilePanels.h>
#include <QWPlatform/appkit/MenuItem.h>
#include <QWPlatform/foundation/Localization.h>

#include <QMenu>
#include <QPointer>

using platform::localized;
using platform::System;

namespace qw
{

namespace
{
constexpr auto exchangeType = "qwshortcuts";
constexpr auto legacyExchangeType = "tovrshortcuts";
constexpr int fixedPresetItems = 6;

/// What an exported file is called unless the user says otherwise.
QString exchangeName()
{
    const QWApplication *const application = QWApplication::sharedApplication();
    const QString name = application ? application->name() : QString();
    return name.isEmpty() ? localized("Keyboard Shortcuts") : platform::formatted(localized("%@ Shortcuts"), {name});
}

bool mayReplace(const QString &name)
{
    const QString question = localized("“%@” already exists. Do you want to replace it?");
    const QString consequence = localized("A preset with the same name already exists. Replacing it will overwrite its "
                                          "current contents.");
    return platform::runAlert(
               {platform::formatted(question, {name}), consequence, {localized("Replace"), localized("Cancel")}}) == 0;
}
} // namespace

PresetCommands::PresetCommands(QWKeyboardShortcuts &registry, ShortcutFolder &folder, const WriteFailures &failures)
    : m_registry(registry)
    , m_folder(folder)
    , m_failures(failures)
{
}

void PresetCommands::buildMenu()
{
    QMenu *const menu = _editor() ? _editor()->presetsMenu() : nullptr;
    if (!menu)
        return;
    const QList<QAction *> old = menu->actions().mid(fixedPresetItems);
    for (QAction *const item : old) {
        menu->removeAction(item);
        item->deleteLater(); // it may be the one that is being chosen
    }
    for (const QString &name : m_folder.presets())
        platform::addMenuItem(*menu, name, "loadPreset:");
}

void PresetCommands::load(QObject *sender)
{
    const auto *const item = qobject_cast<QAction *>(sender);
    if (!item)
        return;
    QWError error;
    if (!m_folder.usePreset(platform::titleOf(*item), &error))
        m_failures.tell(error);
    _currentShortcutsDidChange();
}

void PresetCommands::loadFactory()
{
    const int button = platform::runAlert(
        {localized("Are you sure you want to reset your keyboard shortcuts to the factory defaults?"),
         localized("This action is not undoable."),
         {localized("Reset"), localized("Cancel")}});
    if (button != 0)
        return;
    QWError error;
    if (!m_folder.setCurrent({}, &error))
        m_failures.tell(error);
    _currentShortcutsDidChange();
}

void PresetCommands::exportChanges()
{
    platform::SavePanelRequest request;
    request.window = _editor() ? _editor()->window() : nullptr;
    request.suggestedName = exchangeName();
    request.requiredFileType = exchangeType;
    System::current().filePanels().beginSavePanel(request, [self = QPointer(this)](int code, const QString &path) {
        if (self)
            self->_exportPanelDidEnd(code, path);
    });
}

void PresetCommands::import()
{
    platform::OpenPanelRequest request;
    request.window = _editor() ? _editor()->window() : nullptr;
    request.fileTypes = {exchangeType, legacyExchangeType};
    System::current().filePanels().beginOpenPanel(request, [self = QPointer(this)](int code, const QStringList &paths) {
        if (self)
            self->_importPanelDidEnd(code, paths.value(0));
    });
}

void PresetCommands::saveSheetDidEnd(int returnCode)
{
    constexpr int save = 1;
    if (returnCode != save || !_editor())
        return;
    QString name = _editor()->presetName();
    if (name.isEmpty() || PresetNames::isHidden(name))
        return; // the save sheet lets no such name through
    name.replace('/', '_');
    if (m_folder.hasPreset(name) && !mayReplace(name))
        return;
    QWError error;
    if (!m_folder.setPreset(name, m_registry.changedShortcuts(), &error))
        m_failures.tell(error);
    buildMenu();
}

ShortcutEditor *PresetCommands::_editor() const
{
    return ShortcutEditor::of(m_registry);
}

void PresetCommands::_currentShortcutsDidChange()
{
    if (_editor())
        _editor()->clearSearchString();
    m_registry.loadCurrentShortcuts();
}

void PresetCommands::_importPanelDidEnd(int code, const QString &path)
{
    if (_editor())
        _editor()->filePanelDidEnd();
    if (code != platform::FilePanels::OK)
        return;
    const auto array = ShortcutFiles::readArray(path);
    const QString name = PresetNames::forFile(path);
    if (!array || name.isEmpty())
        return;
    QWError error;
    if (!m_folder.addPreset(name, *array, &error))
        m_failures.tell(error);
    buildMenu();
}

void PresetCommands::_exportPanelDidEnd(int code, const QString &path)
{
    QWError error;
    if (_editor())
        _editor()->filePanelDidEnd();
    if (code == platform::FilePanels::OK && !ShortcutFiles::writeArray(path, m_registry.changedShortcuts(), &error))
        m_failures.tell(error);
}

} // namespace qw

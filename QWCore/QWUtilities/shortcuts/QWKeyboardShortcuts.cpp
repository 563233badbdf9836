#include "QWKeyboardShortcuts.h"

#include "QWUtilities/shortcuts/registry/ShortcutRegistry.h"

#include <QWPlatform/System.h>
#include <QWPlatform/foundation/UserDefaults.h>

using platform::System;

namespace
{
constexpr auto openKey = "Keyboard Shortcuts Open";
} // namespace

QWKeyboardShortcuts::QWKeyboardShortcuts()
    : d(std::make_unique<Private>(*this))
{
}

QWKeyboardShortcuts::~QWKeyboardShortcuts()
{
    d->m_editor.reset(); // which may ask meanwhile
}

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
    sharedInstance().d->_openPanel();
}

void QWKeyboardShortcuts::togglePanel()
{
    sharedInstance().d->_togglePanel();
}

bool QWKeyboardShortcuts::performShortcut(const QEvent &event)
{
    if (!platform::KeyEvent::concerns(event))
        return false;
    auto *const registry = System::current().sharedIfMade<QWKeyboardShortcuts>();
    return registry && registry->d->_performShortcut(event);
}

const QString &QWKeyboardShortcuts::shortcutsDirectory() const
{
    return d->m_shortcutsDirectory;
}

const QString &QWKeyboardShortcuts::currentShortcutsPath() const
{
    return d->m_currentShortcutsPath;
}

const QWKeyboardShortcuts::Groups &QWKeyboardShortcuts::groups() const
{
    return d->m_groups;
}

const QWKeyboardShortcuts::Groups &QWKeyboardShortcuts::displayResults() const
{
    return d->m_displayResults;
}

std::shared_ptr<QWShortcut> QWKeyboardShortcuts::shortcutWithKey(const std::optional<QWShortcutKey> &key) const
{
    return d->shortcutWithKey(key);
}

std::shared_ptr<QWShortcut> QWKeyboardShortcuts::shortcutWithActionTag(const platform::Selector &action,
                                                                       qint32 tag) const
{
    return d->m_index.shortcutWithActionTag(action, tag);
}

void QWKeyboardShortcuts::setAlertsFailures(bool alerts)
{
    d->m_failures.setAlerts(alerts);
}

void QWKeyboardShortcuts::loadCurrentShortcuts()
{
    d->loadCurrentShortcuts();
}

QVariantList QWKeyboardShortcuts::changedShortcuts() const
{
    return d->changedShortcuts();
}

void QWKeyboardShortcuts::saveToDefaults()
{
    d->saveToDefaults();
}

void QWKeyboardShortcuts::reloadDisplay()
{
    d->reloadDisplay();
}

void QWKeyboardShortcuts::buildPresetsMenu()
{
    d->m_presets.buildMenu();
}

QStringList QWKeyboardShortcuts::presets() const
{
    return d->m_folder.presets();
}

void QWKeyboardShortcuts::loadPreset(QObject *sender)
{
    d->m_presets.load(sender);
}

void QWKeyboardShortcuts::loadFactoryPreset(QObject *)
{
    d->m_presets.loadFactory();
}

void QWKeyboardShortcuts::exportShortcuts(QObject *)
{
    d->m_presets.exportChanges();
}

void QWKeyboardShortcuts::loadShortcuts(QObject *)
{
    d->m_presets.import();
}

void QWKeyboardShortcuts::saveShortcutPanelDidEnd(int returnCode)
{
    d->m_presets.saveSheetDidEnd(returnCode);
}

bool QWKeyboardShortcuts::doShortcut(const platform::KeyEvent &event)
{
    return d->doShortcut(event);
}

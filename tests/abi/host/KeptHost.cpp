#include "KeptHost.h"

#include "KeptPreferences.h"
#include "Observers.h"

#include <QWBase/QWApplicationLog.h>
#include <QWBase/QWButton.h>
#include <QWBase/QWComponentDescription.h>
#include <QWBase/QWError.h>
#include <QWBase/QWFile.h>
#include <QWBase/QWGradient.h>
#include <QWBase/QWMenuSorting.h>
#include <QWBase/tables/QWTableView.h>
#include <QWPlatform/System.h>
#include <QWPlatform/appkit/Alerts.h>
#include <QWPlatform/appkit/MenuItem.h>
#include <QWPlatform/appkit/Panel.h>
#include <QWPlatform/appkit/ResponderChain.h>
#include <QWPlatform/foundation/BackgroundWork.h>
#include <QWPlatform/foundation/Bundle.h>
#include <QWPlatform/foundation/Clock.h>
#include <QWPlatform/foundation/Formatter.h>
#include <QWPlatform/foundation/Localization.h>
#include <QWPlatform/foundation/Locations.h>
#include <QWPlatform/foundation/PropertyList.h>
#include <QWPlatform/foundation/TextForms.h>
#include <QWPlatform/foundation/UserDefaults.h>
#include <QWUtilities/controllers/QWRemoteControl.h>
#include <QWUtilities/controllers/QWScrollWheelManager.h>
#include <QWUtilities/plugins/QWAUManager.h>
#include <QWUtilities/plugins/QWVSTManager.h>
#include <QWUtilities/recorder/QWVeskBrowser.h>
#include <QWUtilities/shell/QWAboutPanel.h>
#include <QWUtilities/shell/QWManual.h>
#include <QWUtilities/shell/QWSplashScreen.h>
#include <QWUtilities/shortcuts/QWKeyboardShortcuts.h>

#include <QKeyEvent>
#include <QMenu>

using platform::System;

namespace
{
/// A plug-in manager of the host's own, with something behind what the library keeps.
class Catalog : public QWVSTManager
{
public:
    int favourites = 5;
};

/// A formatter and a table of the host's own.
class Stars : public platform::Formatter
{
public:
    QString stringForObjectValue(const QVariant &value) const override { return QString(value.toInt(), u'*'); }
};

class Ratings : public QWTableView
{
public:
    QWTableColumn tableColumnForIdentifierWidth(const QString &identifier, double width) const override
    {
        return {.identifier = identifier, .title = "Rating", .formatter = stars, .width = width};
    }

    std::shared_ptr<Stars> stars = std::make_shared<Stars>();
};
} // namespace

void KeptHost::applicationDidFinishLaunching()
{
    _askItself();
    _askPlatform();
    _askBase();
    _askMenus();
    _askShortcuts();
    _askPreferences();
    _askControllers();
    _askCatalogs();
    _askTables();
    exit(m_answers.areRight() ? 0 : 1);
}

void KeptHost::_askItself()
{
    _expect(sharedApplication() == this, "the shared application");
    _expect(name() == "Kept Headers" && code() == "KH" && majorVersion() == 1 && !isBetaVersion(), "name and version");
    _expect(supportDirectory().endsWith("Kept Headers"), "support folder");
    _expect(handlesExceptions(), "exceptions are handled");
    _expect(m_url == "none" && m_gain == 7, "fields of the subclass");
    _expect(QWSplashScreen::isVisible(), "splash screen while launching");
    QWSplashScreen::setAction("Asking");
}

void KeptHost::_askPlatform()
{
    System &system = System::current();
    _expect(platform::Bundle::forClassOf(*this).path() == system.mainBundle().path(), "bundle of a class");
    _expect(system.mainBundle().identifier() == "com.example.keptheaders", "main bundle");
    _expect(system.locations().expandingTilde("~/x") == system.locations().home() + "/x", "home");
    _expect(system.clock().now().isValid(), "time");
    _expect(system.backgroundWork().running() == 0, "background work");
    system.userDefaults().registerDefaults({{"Gain", 3}});
    _expect(system.userDefaults().integer("Gain") == 3, "user defaults");
    const QVariantMap map{{"a", 1}};
    _expect(platform::PropertyList::fromData(platform::PropertyList::toXml(map)) == QVariant(map), "property list");
    _expect(platform::TextForms::rectFromString("{{1, 2}, {3, 4}}") == QRectF(1, 2, 3, 4), "text of a rectangle");
    _expect(platform::formatted("%@ of %@", {"1", "2"}) == "1 of 2", "format");
}

void KeptHost::_askBase()
{
    const QWComponentDescription component(platform::fourCharCode("aufx"), 1, 2);
    _expect(component.isEffect() && QWComponentDescription::descriptionWithState(component.state()) == component,
            "component description");
    _expect(QWGradient(Qt::black, Qt::white).colorAt(1) == QColor(Qt::white), "gradient");
    _expect(QWMenuSorting::compareTitles("a", "B") < 0, "order of titles");
    _expect(QWError("No", "why").reason() == "why", "error");
    QWButton button("Play");
    button.setBezelStyle(QWButton::QuietDark);
    _expect(button.sizeHint().isValid(), "button");
    const QString folder = supportDirectory() + "/asked";
    _expect(QWFile::createDirectoryAtPath(folder) && QWFile::deleteFileAtPath(folder), "files");
    QWApplicationLog::sharedLog().infoMessage(QW_LOG_CONTEXT("Host"), "asked");
    _expect(QWFile::fileExistsAtPath(QWApplicationLog::sharedLog().path()), "log");
}

void KeptHost::_askMenus()
{
    QMenu menu;
    platform::MenuItem *item = platform::addMenuItem(menu, "Softer", "changeGain:", "d");
    item->setTarget(this);
    item->setTag(-4);
    item->trigger();
    _expect(m_gain == -4, "action of a menu item");
    _expect(platform::perform(this, "changeGain:", static_cast<QObject *>(item)), "selector");
    _expect(platform::targetForAction("changeGain:") == this, "end of the responder chain");
}

void KeptHost::_askShortcuts()
{
    QWKeyboardShortcuts::loadShortcuts();
    const auto &shortcuts = QWKeyboardShortcuts::sharedInstance();
    const auto louder = shortcuts.shortcutWithActionTag("changeGain:", 3);
    _expect(shortcuts.groups().size() == 1 && louder && louder->name() == "Louder", "shortcuts");
    _expect(louder && louder->key() == QWShortcutKey(u'u', platform::KeyEvent::Command), "key of a shortcut");
    const QKeyEvent press(QEvent::KeyPress, Qt::Key_U, Qt::ControlModifier, "u");
    _expect(QWKeyboardShortcuts::performShortcut(press) && m_gain == 3, "a shortcut's action");
}

void KeptHost::_askPreferences()
{
    QWPreferencesPanel &preferences = QWPreferencesPanel::install<KeptPreferences>();
    QWPreferencesPanel::open();
    const auto *pane = static_cast<KeptPane *>(preferences.paneForIdentifier("general"));
    _expect(pane && pane == preferences.currentPane(), "pane");
    _expect(pane && pane->updates > 0 && pane->fronts == 1, "what a pane is told");
    _expect(preferences.panel() && preferences.panel()->isVisible(), "panel");
    QWAboutPanel::open();
    _expect(!QWManual::appUsesQWManual(), "a host without a manual");
}

void KeptHost::_askControllers()
{
    GridWatcher grid;
    QWMonomeRemote::remote().addObserver(grid);
    _expect(QWMonomeRemote::remote().hasObserver(grid), "observer of the grid");
    QWMonomeRemote::remote().removeObserver(grid);
    RemoteWatcher remote;
    _expect(!QWRemoteControl::remoteControl().hasListener(&remote), "listener of the remote");
    QWScrollWheelManager::loadActions();
    _expect(QWScrollWheelManager::defaultManager().actions().size() == 1, "actions of the wheel");
}

void KeptHost::_askCatalogs()
{
    Catalog catalog;
    catalog.validate();
    const auto menu = catalog.effectsMenuWithTargetAction(this, "insertEffect:");
    _expect(menu->actions().size() == 1 && catalog.database().empty(), "catalog of a machine without plug-ins");
    _expect(catalog.favourites == 5, "field of the host's manager");
    QWAUManager units;
    units.validate();
    _expect(units.database().empty(), "catalog of a machine without units");
}

void KeptHost::_askTables()
{
    Ratings table;
    table.addTableColumn(table.tableColumnForIdentifierWidth("rating", 40));
    _expect(table.columnState().size() == 1, "columns of a table");
    _expect(table.stars->stringForObjectValue(3) == "***", "formatter of the host");
    QWApplication &application = *this;
    _expect(application.openFile("kept.wav") && !application.openFile("other.wav"), "files that are opened");
    _expect(!QWVeskBrowser::sharedInstance().window(), "recorder browser before it is opened");
}

#include "MyApplication.h"

#include "GridLights.h"
#include "HostWindow.h"
#include "Preferences.h"
#include "Transport.h"

#include <QWBase/QWComponentDescription.h>
#include <QWBase/QWVSTDescription.h>
#include <QWPlatform/System.h>
#include <QWPlatform/appkit/Alerts.h>
#include <QWPlatform/appkit/MenuItem.h>
#include <QWPlatform/appkit/Theme.h>
#include <QWPlatform/foundation/Bundle.h>
#include <QWPlatform/foundation/Localization.h>
#include <QWPlatform/foundation/UserDefaults.h>
#include <QWPlatform/plugins/AudioPlugin.h>
#include <QWPlatform/plugins/PluginLoader.h>
#include <QWUtilities/controllers/QWScrollWheelManager.h>
#include <QWUtilities/shell/QWAboutPanel.h>
#include <QWUtilities/shell/QWManual.h>
#include <QWUtilities/shell/QWSplashScreen.h>
#include <QWUtilities/shortcuts/QWKeyboardShortcuts.h>

#include <QIcon>
#include <QUrl>

MyApplication::MyApplication(int &argc, char **argv)
    : QWApplication(argc, argv)
{
    platform::applyTheme(*this, platform::ThemeChoice::System); // before the splash screen shows
    setWindowIcon(QIcon(platform::System::current().mainBundle().pathForResource("MyHost", "svg")));
    setDesktopFileName("com.example.myhost"); // how the desktop finds icon and name of a running host
    platform::System::current().userDefaults().registerDefaults({{"Use Controllers", true}});
}

MyApplication::~MyApplication() = default;

void MyApplication::applicationDidFinishLaunching()
{
    m_units.emplace();
    m_units->validate(); // the splash screen tells what happens
    m_vst.emplace();
    m_vst->validate();
    QWSplashScreen::setAction("Opening the window");
    m_window = std::make_unique<HostWindow>();
    m_window->addEffects(m_units->effectsMenuWithTargetAction(this, "insertEffect:"));
    m_window->addEffects(m_vst->effectsMenuWithTargetAction(this, "insertEffect:"));
    m_window->show();
    QWKeyboardShortcuts::loadShortcuts(); // after the menus, whose items take their keys from it
    QWScrollWheelManager::loadActions();
    QWPreferencesPanel::install<Preferences>();
    if (platform::System::current().userDefaults().boolean("Use Controllers")) {
        m_lights = std::make_unique<GridLights>();
        m_transport = std::make_unique<Transport>();
    }
}

void MyApplication::insertEffect(QObject *sender)
{
    const auto *item = qobject_cast<platform::MenuItem *>(sender);
    const QVariant object = item ? item->representedObject() : QVariant();
    platform::PluginLoader &loader = platform::System::current().pluginLoader();
    QString error;
    std::unique_ptr<platform::AudioPlugin> plugin;
    if (object.metaType() == QMetaType::fromType<QWComponentDescription>())
        plugin = loader.openComponent(object.value<QWComponentDescription>().component(), &error);
    else if (const auto record = object.value<std::shared_ptr<QWVSTDescription>>())
        plugin = loader.openVST(record->path(), &error);
    if (!plugin)
        platform::runAlert({platform::localized("The effect could not be opened."), error, {}});
}

void MyApplication::getUrlWithReplyEvent(const QString &url)
{
    const QString command = QUrl(url).host(); // "myhost://preferences"
    if (command == "preferences")
        openPreferences(nullptr);
    else if (command == "about")
        openAbout(nullptr);
    else if (command == "quit")
        quit();
}

void MyApplication::toggleKeyboardShortcuts(QObject *)
{
    QWKeyboardShortcuts::togglePanel();
}

void MyApplication::toggleScrollWheelActions(QObject *)
{
    QWScrollWheelManager::togglePanel();
}

void MyApplication::openPreferences(QObject *)
{
    QWPreferencesPanel::open(); // or openPane("general")
}

void MyApplication::openManual(QObject *)
{
    QWManual::openManual();
}

void MyApplication::openAbout(QObject *)
{
    QWAboutPanel::open();
}

#include "DemoApplication.h"

#include "../audio/AudioDocument.h"
#include "../preferences/HostPreferences.h"
#include "../tour/Tour.h"
#include "../tour/TourSteps.h"
#include "ControllerActions.h"
#include "HostMenus.h"
#include "HostSettings.h"
#include "MainWindow.h"
#include "SoundActions.h"
#include "ViewActions.h"
#include "WheelActions.h"

#include <QWPlatform/System.h>
#include <QWPlatform/appkit/ResponderChain.h>
#include <QWPlatform/foundation/Bundle.h>
#include <QWPlatform/foundation/Locations.h>
#include <QWUtilities/controllers/QWScrollWheelManager.h>
#include <QWUtilities/plugins/QWAUManager.h>
#include <QWUtilities/plugins/QWVSTManager.h>
#include <QWUtilities/plugins/QWVSTWrapping.h>
#include <QWUtilities/recorder/QWVeskBrowser.h>
#include <QWUtilities/shell/QWAboutPanel.h>
#include <QWUtilities/shell/QWManual.h>
#include <QWUtilities/shell/QWSplashScreen.h>
#include <QWUtilities/shortcuts/QWKeyboardShortcuts.h>

#include <QFileInfo>
#include <QIcon>

namespace demo
{

using platform::System;

namespace
{
constexpr int iconSizes[] = {16, 24, 32, 48, 64, 128, 256, 512};
}

DemoApplication::DemoApplication(int &argc, char **argv, HostOptions options)
    : QWApplication(argc, argv)
    , m_options(std::move(options))
{
    _setUp();
    if (!m_options.tour.isEmpty())
        m_tour = std::make_unique<Tour>(*this, m_options.tour);
}

DemoApplication::~DemoApplication() = default;

void DemoApplication::_setUp()
{
    HostSettings::registerDefaults();
    if (!m_options.supportSite.isEmpty())
        System::current().locations().setSupportSite(m_options.supportSite);
    m_theme = m_options.theme;
    if (m_theme == platform::ThemeChoice::System && m_options.tour.isEmpty()) // pictures are alike everywhere
        m_theme = ViewActions::storedTheme();
    platform::applyTheme(*this, m_theme);
    _loadIcon();
}

void DemoApplication::_loadIcon()
{
    QIcon icon;
    for (const int size : iconSizes)
        icon.addFile(System::current().mainBundle().pathForResource(QStringLiteral("Tine-%1").arg(size), "png"));
    setWindowIcon(icon);
}

void DemoApplication::applicationDidFinishLaunching()
{
    m_units = std::make_unique<QWAUManager>();
    m_vst = std::make_unique<QWVSTManager>();
    _validate();
    _openWindow();
    if (m_tour)
        m_tour->start(makeTourSteps(*m_tour));
    if (m_options.quit)
        quit();
}

void DemoApplication::_validate()
{
    m_units->validate();
    m_vst->validate();
}

void DemoApplication::_openWindow()
{
    m_document = std::make_unique<AudioDocument>();
    m_window = std::make_unique<MainWindow>(*m_document);
    m_actions = std::make_unique<SoundActions>(*m_document, *m_window);
    m_viewActions = std::make_unique<ViewActions>(*m_document, *m_window, m_theme);
    platform::setDelegate(m_window.get(), m_actions.get());
    platform::setDelegate(this, m_viewActions.get());
    m_menus = std::make_unique<HostMenus>(*m_window, *m_actions);
    m_menus->fill(*m_units, *m_vst);
    m_window->setPlugInMenus(m_menus->effects(), m_menus->instruments());
    connect(&m_actions->work(), &SoundWork::started, m_window.get(), &HostMenus::validateOpenMenus);
    connect(&m_actions->work(), &SoundWork::ended, m_window.get(), &HostMenus::validateOpenMenus);
    connect(m_document.get(), &AudioDocument::changed, m_window.get(), &HostMenus::validateOpenMenus);
    connect(m_window.get(), &MainWindow::closed, this, &QCoreApplication::quit);
    if (!m_tour && HostSettings::isOn(HostSettings::rememberFrameKey)) // the tour's pictures are alike everywhere
        m_window->restoreFrame();
    m_window->show();
    QWKeyboardShortcuts::sharedInstance().setAlertsFailures(true);
    QWKeyboardShortcuts::loadShortcuts(); // with the menus there, whose items take their keys from it
    _takeUpControllers();
    _openFirstSound();
}

void DemoApplication::_takeUpControllers()
{
    m_window->showRuler(HostSettings::isOn(HostSettings::rulerKey));
    m_window->showChain(HostSettings::isOn(HostSettings::chainKey));
    QWPreferencesPanel::install<HostPreferences>();
    QWScrollWheelManager::loadActions();
    m_wheelActions = std::make_unique<WheelActions>(*m_window, *m_actions);
    m_controllerActions = std::make_unique<ControllerActions>(m_window->viewport());
    m_controllerActions->applySettings();
}

void DemoApplication::_openFirstSound()
{
    const HostSettings::Launch launch = m_tour ? HostSettings::Launch::Nothing : HostSettings::launch();
    if (!m_options.files.isEmpty()) {
        if (const QString &first = m_options.files.first();
            !QFileInfo(first).isFile()) // one that is there comes by itself
            m_actions->openFile(first);
    } else if (launch == HostSettings::Launch::TestTone)
        m_actions->openTestTone(nullptr);
    else if (launch == HostSettings::Launch::LastSound && !HostSettings::lastSound().isEmpty())
        m_actions->openFile(HostSettings::lastSound());
}

void DemoApplication::toggleScrollWheelActions(QObject *)
{
    QWScrollWheelManager::togglePanel();
}

void DemoApplication::openPreferences(QObject *)
{
    QWPreferencesPanel::open();
}

void DemoApplication::applyControllerSettings(QObject *)
{
    m_controllerActions->applySettings();
}

// Bare libraries that were installed meanwhile become bundles first; the window stays at work until they are.
void DemoApplication::validatePlugIns(QObject *)
{
    auto &wrapping = QWVSTWrapping::sharedInstance();
    if (!wrapping.isUnderWay() && !wrapping.begin([this] { scanPlugIns(); }))
        scanPlugIns();
}

void DemoApplication::scanPlugIns()
{
    QWSplashScreen::splashScreen().open();
    _validate();
    QWSplashScreen::splashScreen().close();
    m_menus->fill(*m_units, *m_vst);
}

bool DemoApplication::openFile(const QString &path)
{
    m_actions->openFile(path);
    return true;
}

void DemoApplication::importFromRecorder(QObject *)
{
    QWVeskBrowser::openWindow();
}

void DemoApplication::toggleKeyboardShortcuts(QObject *)
{
    QWKeyboardShortcuts::togglePanel();
}

void DemoApplication::openManual(QObject *)
{
    QWManual::openManual();
}

void DemoApplication::openLegal(QObject *)
{
    QWManual::openLegal();
}

void DemoApplication::openAcknowledgements(QObject *)
{
    QWManual::openAcknowledgements();
}

void DemoApplication::openAbout(QObject *)
{
    QWAboutPanel::open();
}

void DemoApplication::terminate(QObject *)
{
    m_window->close(); // quits, unless the user changes their mind
}

} // namespace demo

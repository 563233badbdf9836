#include "DemoApplication.h"

#include "../audio/AudioDocument.h"
#include "../tour/Tour.h"
#include "../tour/TourSteps.h"
#include "HostMenus.h"
#include "MainWindow.h"
#include "SoundActions.h"

#include <QWPlatform/System.h>
#include <QWPlatform/foundation/Bundle.h>
#include <QWPlatform/foundation/Locations.h>
#include <QWUtilities/plugins/QWAUManager.h>
#include <QWUtilities/plugins/QWVSTManager.h>
#include <QWUtilities/shell/QWAboutPanel.h>
#include <QWUtilities/shell/QWManual.h>
#include <QWUtilities/shell/QWSplashScreen.h>

#include <QIcon>
#include <QUrl>

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
    setApplicationDisplayName(QWApplication::name());
    if (!m_options.supportSite.isEmpty())
        System::current().locations().setSupportSite(m_options.supportSite);
    platform::applyTheme(*this, m_options.theme);
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
    m_menus = std::make_unique<HostMenus>(*m_window, *m_actions, *this);
    m_menus->fill(*m_units, *m_vst);
    m_window->setPlugInMenus(m_menus->effects(), m_menus->instruments());
    connect(m_window.get(), &MainWindow::closed, this, &QCoreApplication::quit);
    if (!m_tour) // whose pictures are alike everywhere
        m_window->restoreFrame();
    m_window->show();
    if (!m_options.files.isEmpty())
        m_actions->openFile(m_options.files.first());
}

void DemoApplication::validatePlugIns(QObject *)
{
    QWSplashScreen::splashScreen().open();
    _validate();
    QWSplashScreen::splashScreen().close();
    m_menus->fill(*m_units, *m_vst);
}

void DemoApplication::getUrlWithReplyEvent(const QString &text)
{
    const QUrl url(text);
    if (url.isLocalFile())
        m_actions->openFile(url.toLocalFile());
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

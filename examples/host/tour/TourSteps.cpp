#include "TourSteps.h"

#include "../app/DemoApplication.h"
#include "../app/MainWindow.h"
#include "ControllerScenes.h"
#include "EffectStep.h"
#include "MenuStep.h"
#include "RecorderScenes.h"
#include "ScanAlertStep.h"
#include "ShortcutScenes.h"
#include "SplashStep.h"
#include "WindowStep.h"

#include <QWPlatform/appkit/Panel.h>
#include <QWUtilities/shell/QWAboutPanel.h>
#include <QWUtilities/shell/QWManual.h>

namespace demo
{

namespace
{
QWidget *mainWindow(DemoApplication &application)
{
    return &application.mainWindow();
}

QWidget *aboutPanel(DemoApplication &)
{
    return QWAboutPanel::aboutPanel().window();
}

QWidget *manualWindow(DemoApplication &)
{
    return QWManual::manual().window();
}

platform::WebView *manualPage(DemoApplication &)
{
    return QWManual::manual().contentView();
}

void closeAboutPanel(DemoApplication &)
{
    QWAboutPanel::aboutPanel().close();
}

void closeManual(DemoApplication &)
{
    QWManual::manual().window()->close();
}

template <class Step, class... Arguments>
void add(std::vector<std::unique_ptr<TourStep>> &steps, Arguments &&...arguments)
{
    steps.push_back(std::make_unique<Step>(std::forward<Arguments>(arguments)...));
}
} // namespace

std::vector<std::unique_ptr<TourStep>> makeTourSteps(const Tour &tour)
{
    using App = DemoApplication;
    std::vector<std::unique_ptr<TourStep>> steps;
    add<SplashStep>(steps, tour);
    add<WindowStep>(steps, WindowStep::Window{"host-empty", nullptr, mainWindow, nullptr});
    add<EffectStep>(steps, "effect-applied", QStringList{"ZamDelay", "MaFreeverb", "ZamVerb"}, 1);
    add<MenuStep>(steps, "effects-menu");
    add<EffectStep>(steps, "host", QStringList{"DragonflyHallReverb", "MVerb", "MaFreeverb", "ZamVerb"}, 2);
    for (const WindowStep::Window &scene : shortcutScenes())
        add<WindowStep>(steps, scene);
    for (const WindowStep::Window &scene : controllerScenes())
        add<WindowStep>(steps, scene);
    for (const WindowStep::Window &scene : recorderScenes())
        add<WindowStep>(steps, scene);
    add<WindowStep>(steps, WindowStep::Window{"about", [](App &app) { app.openAbout(nullptr); }, aboutPanel,
                                              closeAboutPanel, true});
    add<WindowStep>(steps, WindowStep::Window{"manual", [](App &app) { app.openManual(nullptr); }, manualWindow,
                                              nullptr, false, manualPage});
    add<WindowStep>(steps, WindowStep::Window{"manual-legal", [](App &app) { app.openLegal(nullptr); }, manualWindow,
                                              closeManual, false, manualPage});
    add<ScanAlertStep>(steps);
    return steps;
}

} // namespace demo

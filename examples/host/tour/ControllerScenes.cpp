#include "ControllerScenes.h"

#include "GridScene.h"

#include <QWPlatform/appkit/Panel.h>
#include <QWUtilities/controllers/QWScrollWheelManager.h>
#include <QWUtilities/shell/QWPreferencesPanel.h>

#include <QTableView>

namespace demo
{

namespace
{
QWidget *scrollWheelPanel(DemoApplication &)
{
    return QWScrollWheelManager::defaultManager().panel();
}

QWidget *preferencesPanel(DemoApplication &)
{
    return QWPreferencesPanel::sharedInstance().panel();
}

void openScrollWheelPanel(DemoApplication &)
{
    QWScrollWheelManager::openPanel();
    if (QWidget *panel = QWScrollWheelManager::defaultManager().panel())
        panel->findChild<QTableView *>()->selectRow(2);
}

void closeScrollWheelPanel(DemoApplication &)
{
    QWScrollWheelManager::defaultManager().panel()->close();
}

void closePreferences(DemoApplication &)
{
    unplugGrid();
    QWPreferencesPanel::sharedInstance().panel()->close();
}
} // namespace

std::span<const WindowStep::Window> controllerScenes()
{
    using Window = WindowStep::Window;
    using App = DemoApplication;
    static const Window scenes[] = {
        {.name = "scrollwheel",
         .open = openScrollWheelPanel,
         .window = scrollWheelPanel,
         .close = closeScrollWheelPanel,
         .onBackdrop = true},
        gridScene(),
        {.name = "preferences-general",
         .open = [](App &) { QWPreferencesPanel::openPane("general"); },
         .window = preferencesPanel,
         .onBackdrop = true},
        {.name = "preferences-files",
         .open = [](App &) { QWPreferencesPanel::openPane("files"); },
         .window = preferencesPanel,
         .onBackdrop = true},
        {.name = "preferences-controllers",
         .open = [](App &) { QWPreferencesPanel::openPane("controllers"); },
         .window = preferencesPanel,
         .onBackdrop = true},
        {.name = "preferences-appearance",
         .open = [](App &) { QWPreferencesPanel::openPane("appearance"); },
         .window = preferencesPanel,
         .close = closePreferences,
         .onBackdrop = true},
    };
    return scenes;
}

} // namespace demo

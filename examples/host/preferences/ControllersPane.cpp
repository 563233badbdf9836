#include "ControllersPane.h"

#include "../app/HostSettings.h"
#include "GridMonitor.h"
#include "RemoteMonitor.h"

#include <QWPlatform/appkit/ResponderChain.h>

namespace demo
{

void ControllersPane::updateControls()
{
    SettingsPane::updateControls();
    _enableMonitors();
}

void ControllersPane::settingChanged(const QString &, const QVariant &)
{
    platform::sendAction("applyControllerSettings:", nullptr, this);
    _enableMonitors();
}

void ControllersPane::_enableMonitors()
{
    if (auto *grid = findChild<GridMonitor *>())
        grid->setEnabled(HostSettings::isOn(HostSettings::gridKey));
    if (auto *remote = findChild<RemoteMonitor *>())
        remote->setEnabled(HostSettings::isOn(HostSettings::remoteKey));
    if (auto *intensity = findChild<QWidget *>("gridIntensity"))
        intensity->setEnabled(HostSettings::isOn(HostSettings::gridKey));
}

} // namespace demo

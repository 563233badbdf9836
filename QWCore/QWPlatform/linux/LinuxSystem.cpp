#include "LinuxSystem.h"

#include "../System.h"
#include "../appkit/Alerts.h"
#include "../appkit/FilePanels.h"
#include "../appkit/InstanceLink.h"
#include "../appkit/WebView.h"
#include "../appkit/Workspace.h"
#include "../devices/ComponentRegistry.h"
#include "../devices/KeyboardState.h"
#include "../devices/RemoteReceiver.h"
#include "../devices/SerialLines.h"
#include "../devices/SerialRegistry.h"
#include "../foundation/Bundle.h"
#include "../foundation/Locations.h"
#include "../foundation/UserDefaults.h"
#include "../network/UrlDownload.h"
#include "../network/UrlLoader.h"
#include "../plugins/PluginLoader.h"
#include "FileSizeSignal.h"
#include "LinuxAlerts.h"
#include "LinuxChildProcesses.h"
#include "LinuxClock.h"
#include "LinuxComponentRegistry.h"
#include "LinuxFilePanels.h"
#include "LinuxInstanceLink.h"
#include "LinuxKeyboardState.h"
#include "LinuxPluginLoader.h"
#include "LinuxRemoteReceiver.h"
#include "LinuxSerialLines.h"
#include "LinuxSerialRegistry.h"
#include "LinuxUrlDownloads.h"
#include "LinuxUrlLoader.h"
#include "LinuxWebViews.h"
#include "LinuxWorkspace.h"

#include <QCoreApplication>
#include <QDir>

namespace platform
{

namespace
{
constexpr auto defaultSupportSite = "https://support.quorwell.example";

std::unique_ptr<Locations> makeLocations(const Bundle &host)
{
    auto locations = std::make_unique<Locations>(QDir::homePath(), qEnvironmentVariable("QW_LIBRARY_ROOT"));
    const QString configured = host.objectForInfoDictionaryKey("QWSupportSite").toString();
    locations->setSupportSite(configured.isEmpty() ? QString(defaultSupportSite) : configured);
    return locations;
}

std::unique_ptr<UserDefaults> makeUserDefaults(const Bundle &host, const Locations &locations)
{
    const QString domain = host.identifier().isEmpty() ? QString("com.quorwell.unnamed") : host.identifier();
    return std::make_unique<UserDefaults>(locations.mapped("~/Library/Preferences/" + domain + ".plist"));
}

System::Services makeServices()
{
    System::Services services;
    services.mainBundle = std::make_unique<Bundle>(Bundle::forExecutable());
    services.locations = makeLocations(*services.mainBundle);
    services.userDefaults = makeUserDefaults(*services.mainBundle, *services.locations);
    services.alerts = std::make_unique<LinuxAlerts>();
    services.filePanels = std::make_unique<LinuxFilePanels>();
    services.childProcesses = std::make_unique<LinuxChildProcesses>(*services.locations);
    services.clock = std::make_unique<LinuxClock>();
    services.urlLoader = std::make_unique<LinuxUrlLoader>();
    services.urlDownloads = std::make_unique<LinuxUrlDownloads>();
    services.webViews = std::make_unique<LinuxWebViews>();
    services.workspace = std::make_unique<LinuxWorkspace>();
    services.instanceLink = std::make_unique<LinuxInstanceLink>();
    services.keyboardState = std::make_unique<LinuxKeyboardState>();
    services.remoteReceiver = std::make_unique<LinuxRemoteReceiver>();
    services.serialRegistry = std::make_unique<LinuxSerialRegistry>(qEnvironmentVariable("QW_SERIAL_DEVICES"));
    services.serialLines = std::make_unique<LinuxSerialLines>();
    services.componentRegistry =
        std::make_unique<LinuxComponentRegistry>(*services.locations, *services.childProcesses);
    services.pluginLoader = std::make_unique<LinuxPluginLoader>(*services.locations, *services.componentRegistry);
    return services;
}
} // namespace

System &linuxSystem()
{
    ignoreFileSizeSignal();
    static System machine(makeServices());
    // Also where the application object is a plain QApplication: the machine outlives it.
    [[maybe_unused]] static const bool ends = (qAddPostRoutine([] { machine.endWork(); }), true);
    return machine;
}

} // namespace platform

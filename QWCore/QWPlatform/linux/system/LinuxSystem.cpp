#include "LinuxSystem.h"

#include "LinuxClock.h"
#include "QWPlatform/System.h"
#include "QWPlatform/appkit/Alerts.h"
#include "QWPlatform/appkit/FilePanels.h"
#include "QWPlatform/appkit/WebView.h"
#include "QWPlatform/appkit/Workspace.h"
#include "QWPlatform/appkit/windows/InstanceLink.h"
#include "QWPlatform/devices/components/ComponentRegistry.h"
#include "QWPlatform/devices/input/KeyboardState.h"
#include "QWPlatform/devices/input/RemoteReceiver.h"
#include "QWPlatform/devices/serial/SerialLines.h"
#include "QWPlatform/devices/serial/SerialRegistry.h"
#include "QWPlatform/foundation/Bundle.h"
#include "QWPlatform/foundation/Locations.h"
#include "QWPlatform/foundation/UserDefaults.h"
#include "QWPlatform/linux/desktop/LinuxAlerts.h"
#include "QWPlatform/linux/desktop/LinuxFilePanels.h"
#include "QWPlatform/linux/desktop/LinuxInstanceLink.h"
#include "QWPlatform/linux/desktop/LinuxKeyboardState.h"
#include "QWPlatform/linux/desktop/LinuxWebViews.h"
#include "QWPlatform/linux/desktop/LinuxWorkspace.h"
#include "QWPlatform/linux/network/LinuxUrlDownloads.h"
#include "QWPlatform/linux/network/LinuxUrlLoader.h"
#include "QWPlatform/linux/plugins/LinuxComponentRegistry.h"
#include "QWPlatform/linux/plugins/LinuxPluginLoader.h"
#include "QWPlatform/linux/process/FileSizeSignal.h"
#include "QWPlatform/linux/process/LinuxChildProcesses.h"
#include "QWPlatform/linux/remote/LinuxRemoteReceiver.h"
#include "QWPlatform/linux/serial/LinuxSerialLines.h"
#include "QWPlatform/linux/serial/LinuxSerialRegistry.h"
#include "QWPlatform/linux/services/LinuxNetServices.h"
#include "QWPlatform/machine/SystemServices.h"
#include "QWPlatform/network/UrlLoader.h"
#include "QWPlatform/network/services/NetServices.h"
#include "QWPlatform/network/transfers/UrlDownload.h"
#include "QWPlatform/plugins/PluginLoader.h"

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

/// The machine itself.
class LinuxSystem : public System
{
public:
    explicit LinuxSystem(SystemServices services)
        : System(std::move(services))
    {
    }
};

SystemServices makeServices()
{
    SystemServices services;
    services.mainBundle = std::make_unique<Bundle>(Bundle::forExecutable());
    services.locations = makeLocations(*services.mainBundle);
    services.userDefaults = makeUserDefaults(*services.mainBundle, *services.locations);
    services.alerts = std::make_unique<LinuxAlerts>();
    services.filePanels = std::make_unique<LinuxFilePanels>();
    services.childProcesses = std::make_unique<LinuxChildProcesses>(*services.locations);
    services.clock = std::make_unique<LinuxClock>();
    services.urlLoader = std::make_unique<LinuxUrlLoader>();
    services.urlDownloads = std::make_unique<LinuxUrlDownloads>();
    services.netServices = std::make_unique<LinuxNetServices>();
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
    static LinuxSystem machine(makeServices());
    // Also where the application object is a plain QApplication: the machine outlives it.
    [[maybe_unused]] static const bool ends = (qAddPostRoutine([] { machine.endWork(); }), true);
    return machine;
}

} // namespace platform

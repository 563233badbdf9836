#include "SystemServices.h"

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
#include "QWPlatform/foundation/Clock.h"
#include "QWPlatform/foundation/Locations.h"
#include "QWPlatform/foundation/UserDefaults.h"
#include "QWPlatform/foundation/processes/ChildProcesses.h"
#include "QWPlatform/network/UrlLoader.h"
#include "QWPlatform/network/services/NetServices.h"
#include "QWPlatform/network/transfers/UrlDownload.h"
#include "QWPlatform/plugins/PluginLoader.h"

namespace platform
{

SystemServices::SystemServices() = default;
SystemServices::SystemServices(SystemServices &&) noexcept = default;
SystemServices::~SystemServices() = default;

} // namespace platform

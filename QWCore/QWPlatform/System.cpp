#include "System.h"

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
#include "QWPlatform/foundation/BackgroundWork.h"
#include "QWPlatform/foundation/Bundle.h"
#include "QWPlatform/foundation/Clock.h"
#include "QWPlatform/foundation/Locations.h"
#include "QWPlatform/foundation/UserDefaults.h"
#include "QWPlatform/foundation/processes/ChildProcesses.h"
#include "QWPlatform/linux/system/LinuxSystem.h"
#include "QWPlatform/network/UrlLoader.h"
#include "QWPlatform/network/transfers/UrlDownload.h"
#include "QWPlatform/plugins/PluginLoader.h"

#include <algorithm>

namespace platform
{

namespace
{
System *innermost = nullptr;
}

System::Services::Services() = default;
System::Services::Services(Services &&) noexcept = default;
System::Services::~Services() = default;

System &System::current()
{
    return innermost ? *innermost : linuxSystem();
}

System::System(Services services)
    : m_services(std::move(services))
    , m_backgroundWork(std::make_unique<BackgroundWork>())
{
}

System::~System()
{
    Scope scope(*this); // destructors of shared objects ask for the current System
    releaseShared();
    endWork();
}

void System::endWork()
{
    if (m_services.urlLoader)
        m_services.urlLoader->cancelAll();
    if (m_services.urlDownloads)
        m_services.urlDownloads->cancelAll();
    if (m_services.childProcesses)
        m_services.childProcesses->endAll();
    m_backgroundWork->end();
}

void System::releaseShared()
{
    while (!m_shared.empty()) {
        auto last = std::move(m_shared.back()); // out of the list first: its destructor may look around
        m_shared.pop_back();
    }
}

void *System::_find(std::type_index type) const
{
    const auto found = std::find_if(m_shared.begin(), m_shared.end(), [&](const Shared &s) { return s.type == type; });
    return found == m_shared.end() ? nullptr : found->object.get();
}

void System::_release(std::type_index type)
{
    const auto found = std::find_if(m_shared.begin(), m_shared.end(), [&](const Shared &s) { return s.type == type; });
    if (found == m_shared.end())
        return;
    auto object = std::move(found->object);
    m_shared.erase(found);
}

System::Scope::Scope(System &system)
    : m_outer(innermost)
{
    innermost = &system;
}

System::Scope::~Scope()
{
    innermost = m_outer;
}

} // namespace platform

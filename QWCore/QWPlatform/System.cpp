#include "System.h"

#include "QWPlatform/foundation/BackgroundWork.h"
#include "QWPlatform/foundation/processes/ChildProcesses.h"
#include "QWPlatform/linux/system/LinuxSystem.h"
#include "QWPlatform/machine/InnermostSystem.h"
#include "QWPlatform/machine/SystemScope.h"
#include "QWPlatform/machine/SystemServices.h"
#include "QWPlatform/network/UrlLoader.h"
#include "QWPlatform/network/transfers/UrlDownload.h"

#include <algorithm>
#include <vector>

namespace platform
{

class Q_DECL_HIDDEN System::Private
{
public:
    explicit Private(SystemServices parts)
        : services(std::move(parts))
    {
    }

    struct Shared
    {
        std::type_index type;
        SharedObject object;
    };

    /// The entry of @p type, or the end.
    auto entryOf(std::type_index type)
    {
        return std::find_if(shared.begin(), shared.end(), [&](const Shared &s) { return s.type == type; });
    }

    SystemServices services;
    BackgroundWork backgroundWork; ///< Ends before the services that its work uses.
    std::vector<Shared> shared;    ///< In order of making.
};

System &System::current()
{
    return innermostSystem ? *innermostSystem : linuxSystem();
}

SystemServices &SystemServices::current()
{
    return System::current().d->services;
}

System::System(SystemServices services)
    : d(std::make_unique<Private>(std::move(services)))
{
}

System::~System()
{
    SystemScope scope(*this); // destructors of shared objects ask for the current System
    releaseShared();
    endWork();
}

Locations &System::locations() const
{
    return *d->services.locations;
}

const Bundle &System::mainBundle() const
{
    return *d->services.mainBundle;
}

UserDefaults &System::userDefaults() const
{
    return *d->services.userDefaults;
}

Alerts &System::alerts() const
{
    return *d->services.alerts;
}

FilePanels &System::filePanels() const
{
    return *d->services.filePanels;
}

Workspace &System::workspace() const
{
    return *d->services.workspace;
}

WebViews &System::webViews() const
{
    return *d->services.webViews;
}

UrlLoader &System::urlLoader() const
{
    return *d->services.urlLoader;
}

PluginLoader &System::pluginLoader() const
{
    return *d->services.pluginLoader;
}

Clock &System::clock() const
{
    return *d->services.clock;
}

BackgroundWork &System::backgroundWork() const
{
    return d->backgroundWork;
}

void System::endWork()
{
    if (d->services.urlLoader)
        d->services.urlLoader->cancelAll();
    if (d->services.urlDownloads)
        d->services.urlDownloads->cancelAll();
    if (d->services.childProcesses)
        d->services.childProcesses->endAll();
    d->backgroundWork.end();
}

void System::releaseShared()
{
    while (!d->shared.empty()) {
        auto last = std::move(d->shared.back()); // out of the list first: its destructor may look around
        d->shared.pop_back();
    }
}

void System::_keep(std::type_index type, SharedObject object)
{
    d->shared.push_back({type, std::move(object)});
}

void *System::_find(std::type_index type) const
{
    const auto found = d->entryOf(type);
    return found == d->shared.end() ? nullptr : found->object.get();
}

void System::_release(std::type_index type)
{
    const auto found = d->entryOf(type);
    if (found == d->shared.end())
        return;
    auto object = std::move(found->object);
    d->shared.erase(found);
}

} // namespace platform

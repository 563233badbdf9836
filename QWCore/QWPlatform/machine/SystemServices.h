#pragma once

#include <QWPlatform/qwplatform_private.h>

#include <memory>

namespace platform
{

class Alerts;
class Bundle;
class ChildProcesses;
class Clock;
class ComponentRegistry;
class FilePanels;
class InstanceLink;
class KeyboardState;
class Locations;
class NetServices;
class PluginLoader;
class RemoteReceiver;
class SerialLines;
class SerialRegistry;
class UrlDownloads;
class UrlLoader;
class UserDefaults;
class WebViews;
class Workspace;

/// What a System is made of; every pointer that is asked for is set. Those that hosts ask for have an accessor there,
/// the others are reached here only.
struct QWPLATFORM_SHARED_EXPORT SystemServices
{
    SystemServices();
    SystemServices(SystemServices &&) noexcept;
    ~SystemServices();

    /// Those of the current System. Main thread.
    static SystemServices &current();

    std::unique_ptr<Locations> locations;
    std::unique_ptr<Bundle> mainBundle;
    std::unique_ptr<UserDefaults> userDefaults;
    std::unique_ptr<Alerts> alerts;
    std::unique_ptr<FilePanels> filePanels;
    std::unique_ptr<Workspace> workspace;
    std::unique_ptr<WebViews> webViews;
    std::unique_ptr<InstanceLink> instanceLink;
    std::unique_ptr<ChildProcesses> childProcesses;
    std::unique_ptr<UrlLoader> urlLoader;
    std::unique_ptr<UrlDownloads> urlDownloads;
    std::unique_ptr<NetServices> netServices;
    std::unique_ptr<ComponentRegistry> componentRegistry;
    std::unique_ptr<PluginLoader> pluginLoader;
    std::unique_ptr<KeyboardState> keyboardState;
    std::unique_ptr<RemoteReceiver> remoteReceiver;
    std::unique_ptr<SerialRegistry> serialRegistry;
    std::unique_ptr<SerialLines> serialLines;
    std::unique_ptr<Clock> clock;
};

} // namespace platform

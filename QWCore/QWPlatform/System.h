#pragma once

#include <QWPlatform/qwplatform_export.h>

#include <functional>
#include <memory>
#include <typeindex>
#include <vector>

namespace platform
{

class Alerts;
class BackgroundWork;
class Bundle;
class ChildProcesses;
class Clock;
class ComponentRegistry;
class FilePanels;
class InstanceLink;
class KeyboardState;
class Locations;
class PluginLoader;
class SerialLines;
class SerialRegistry;
class RemoteReceiver;
class UrlDownloads;
class UrlLoader;
class UserDefaults;
class WebViews;
class Workspace;

/// One of each outside service. Everything with an effect outside the process goes through the current System:
/// the Linux machine in a host, a FakeSystem in a test. Main thread only, unless a service says otherwise; code
/// that runs on a worker captures the services it needs on the main thread before it starts.
class QWPLATFORM_EXPORT System
{
public:
    /// What a System is made of; every pointer is set.
    struct Services
    {
        Services();
        Services(Services &&) noexcept;
        ~Services();

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
        std::unique_ptr<ComponentRegistry> componentRegistry;
        std::unique_ptr<PluginLoader> pluginLoader;
        std::unique_ptr<KeyboardState> keyboardState;
        std::unique_ptr<RemoteReceiver> remoteReceiver;
        std::unique_ptr<SerialRegistry> serialRegistry;
        std::unique_ptr<SerialLines> serialLines;
        std::unique_ptr<Clock> clock;
    };

    /// The System of the innermost Scope, else the Linux machine, which is made on first use.
    static System &current();

    explicit System(Services services);
    System(const System &) = delete;
    System &operator=(const System &) = delete;

    /// Releases the shared objects, last made first, then ends the work.
    virtual ~System();

    Locations &locations() const { return *m_services.locations; }
    const Bundle &mainBundle() const { return *m_services.mainBundle; }
    UserDefaults &userDefaults() const { return *m_services.userDefaults; }
    Alerts &alerts() const { return *m_services.alerts; }
    FilePanels &filePanels() const { return *m_services.filePanels; }
    Workspace &workspace() const { return *m_services.workspace; }
    WebViews &webViews() const { return *m_services.webViews; }
    InstanceLink &instanceLink() const { return *m_services.instanceLink; }
    ChildProcesses &childProcesses() const { return *m_services.childProcesses; }
    UrlLoader &urlLoader() const { return *m_services.urlLoader; }
    UrlDownloads &urlDownloads() const { return *m_services.urlDownloads; }
    ComponentRegistry &componentRegistry() const { return *m_services.componentRegistry; }
    PluginLoader &pluginLoader() const { return *m_services.pluginLoader; }
    KeyboardState &keyboardState() const { return *m_services.keyboardState; }
    RemoteReceiver &remoteReceiver() const { return *m_services.remoteReceiver; }
    SerialRegistry &serialRegistry() const { return *m_services.serialRegistry; }
    SerialLines &serialLines() const { return *m_services.serialLines; }
    Clock &clock() const { return *m_services.clock; }
    BackgroundWork &backgroundWork() const { return *m_backgroundWork; }

    /// The shared object of class @p T of this System; @p make returns a `T *` that the System then owns. It runs
    /// on first use only, and may itself ask for other shared objects.
    template <class T, class Make>
    T &shared(Make make)
    {
        if (T *made = sharedIfMade<T>())
            return *made;
        std::unique_ptr<void, void (*)(void *)> object(make(), [](void *p) { delete static_cast<T *>(p); });
        auto *raw = static_cast<T *>(object.get());
        m_shared.push_back({std::type_index(typeid(T)), std::move(object)});
        return *raw;
    }

    /// The shared object of class @p T, or null when none was made.
    template <class T>
    T *sharedIfMade() const
    {
        return static_cast<T *>(_find(typeid(T)));
    }

    /// Destroys the shared object of class @p T, if there is one; a later shared() makes a new one.
    template <class T>
    void release()
    {
        _release(typeid(T));
    }

    /// Destroys all shared objects, last made first. The application object does so before it goes.
    void releaseShared();

    /// Makes all loads and downloads fail, ends the programs that other threads wait for, then waits for the background
    /// work, whose results are dropped; from then on none begins. The application object does so before it goes:
    /// afterwards Qt delivers nothing any more, neither what would end a load nor its time-out, and whoever waited for
    /// one would wait for ever. Shared objects go first.
    void endWork();

    /// Makes a System current for the scope's life. Scopes nest; main thread only.
    class QWPLATFORM_EXPORT Scope
    {
    public:
        explicit Scope(System &system);
        ~Scope();
        Scope(const Scope &) = delete;
        Scope &operator=(const Scope &) = delete;

    private:
        System *m_outer;
    };

private:
    struct Shared
    {
        std::type_index type;
        std::unique_ptr<void, void (*)(void *)> object;
    };

    void *_find(std::type_index type) const;
    void _release(std::type_index type);

    Services m_services;
    std::unique_ptr<BackgroundWork> m_backgroundWork; ///< Ends before the services that its work uses.
    std::vector<Shared> m_shared;                     ///< In order of making.
};

} // namespace platform

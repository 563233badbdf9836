#pragma once

#include <QWPlatform/qwplatform_export.h>

#include <memory>
#include <typeindex>

namespace platform
{

class Alerts;
class BackgroundWork;
class Bundle;
class Clock;
class FilePanels;
class Locations;
class PluginLoader;
class UrlLoader;
class UserDefaults;
class WebViews;
class Workspace;
struct SystemServices;

/// One of each outside service. Everything with an effect outside the process goes through the current System. Main
/// thread only, unless a service says otherwise; code that runs on a worker captures the services it needs on the main
/// thread before it starts.
class QWPLATFORM_EXPORT System
{
public:
    /// The machine on which the host runs, made on first use; in a test the fake one that is in scope.
    static System &current();

    System(const System &) = delete;
    System &operator=(const System &) = delete;

    /// Releases the shared objects, last made first, then ends the work.
    virtual ~System();

    /// @name Services
    /// Each lives as long as the System, and says at its class on which threads it may be asked.
    /// @{
    Locations &locations() const;           ///< Where documented places really are.
    const Bundle &mainBundle() const;       ///< The host's own.
    UserDefaults &userDefaults() const;     ///< The user's settings of this host.
    Alerts &alerts() const;                 ///< Shows alerts.
    FilePanels &filePanels() const;         ///< Save and open panels.
    Workspace &workspace() const;           ///< The user's desktop.
    WebViews &webViews() const;             ///< Makes browser views.
    UrlLoader &urlLoader() const;           ///< Loads addresses.
    PluginLoader &pluginLoader() const;     ///< Opens plug-ins.
    Clock &clock() const;                   ///< What time it is.
    BackgroundWork &backgroundWork() const; ///< Work on threads of its own.
    /// @}

    /// The shared object of class @p T of this System; @p make returns a `T *` that the System then owns. It runs
    /// on first use only, and may itself ask for other shared objects.
    template <class T, class Make>
    T &shared(Make make)
    {
        if (T *made = sharedIfMade<T>())
            return *made;
        SharedObject object(make(), [](void *p) { delete static_cast<T *>(p); });
        auto *raw = static_cast<T *>(object.get());
        _keep(typeid(T), std::move(object));
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

    /// Makes all loads fail, drops all downloads, whose observers hear nothing more, ends the programs that other
    /// threads wait for, then waits for the background work, whose results are dropped; from then on none begins. The
    /// application object does so before it goes: afterwards Qt delivers nothing any more, neither what would end a
    /// load nor its time-out, and whoever waited for one would wait for ever. Shared objects go first.
    void endWork();

protected:
    /// What it is made of is for those who make machines; hosts find one.
    explicit System(SystemServices services);

private:
    friend struct SystemServices;
    using SharedObject = std::unique_ptr<void, void (*)(void *)>;

    void _keep(std::type_index type, SharedObject object);
    void *_find(std::type_index type) const;
    void _release(std::type_index type);

    class Private;
    std::unique_ptr<Private> d;
};

} // namespace platform

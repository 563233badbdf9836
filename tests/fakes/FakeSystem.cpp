#include "FakeSystem.h"

#include <QWPlatform/foundation/BackgroundWork.h>
#include <QWPlatform/foundation/Bundle.h>
#include <QWPlatform/foundation/Locations.h>
#include <QWPlatform/foundation/PropertyList.h>
#include <QWPlatform/foundation/UserDefaults.h>
#include <QWPlatform/machine/SystemServices.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>

using namespace platform;

namespace
{
void write(const QString &path, const QByteArray &data)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) || file.write(data) != data.size())
        qFatal("The fake disk cannot write %s", qPrintable(path));
}
} // namespace

struct FakeSystem::Parts
{
    SystemServices services;
    std::unique_ptr<QTemporaryDir> disk = std::make_unique<QTemporaryDir>();
    FakeAlerts *alerts = adopt(services.alerts, new FakeAlerts);
    FakeFilePanels *filePanels = adopt(services.filePanels, new FakeFilePanels);
    FakeWorkspace *workspace = adopt(services.workspace, new FakeWorkspace);
    FakeWebViews *webViews = adopt(services.webViews, new FakeWebViews);
    FakeInstanceLink *instanceLink = adopt(services.instanceLink, new FakeInstanceLink);
    FakeChildProcesses *processes = adopt(services.childProcesses, new FakeChildProcesses);
    FakeUrlLoader *urlLoader = adopt(services.urlLoader, new FakeUrlLoader);
    FakeUrlDownloads *urlDownloads = adopt(services.urlDownloads, new FakeUrlDownloads);
    FakeNetServices *netServices = adopt(services.netServices, new FakeNetServices);
    FakeComponentRegistry *components = adopt(services.componentRegistry, new FakeComponentRegistry);
    FakePluginLoader *pluginLoader = adopt(services.pluginLoader, new FakePluginLoader);
    FakeKeyboardState *keyboard = adopt(services.keyboardState, new FakeKeyboardState);
    FakeRemoteReceiver *remoteReceiver = adopt(services.remoteReceiver, new FakeRemoteReceiver);
    FakeSerialRegistry *serialDevices = adopt(services.serialRegistry, new FakeSerialRegistry);
    FakeSerialLines *lines = adopt(services.serialLines, new FakeSerialLines);
    FakeClock *clock = adopt(services.clock, new FakeClock);

    Parts()
    {
        const QString root = disk->path();
        QDir(root).mkpath("home");
        QDir(root).mkpath("root");
        write(root + "/Host.app/Contents/Info.plist", PropertyList::toXml(defaultHostInfo()));
        services.mainBundle = std::make_unique<Bundle>(root + "/Host.app");
        services.locations = std::make_unique<Locations>(root + "/home", root + "/root");
        services.locations->setSupportSite("http://support.test");
        services.userDefaults =
            std::make_unique<UserDefaults>(root + "/home/Library/Preferences/com.quorwell.test.plist");
    }

    template <class Interface, class Fake>
    static Fake *adopt(std::unique_ptr<Interface> &slot, Fake *fake)
    {
        slot.reset(fake);
        return fake;
    }
};

FakeSystem::FakeSystem()
    : FakeSystem(Parts())
{
}

FakeSystem::FakeSystem(Parts parts)
    : System(std::move(parts.services))
    , alerts(*parts.alerts)
    , filePanels(*parts.filePanels)
    , workspace(*parts.workspace)
    , webViews(*parts.webViews)
    , instanceLink(*parts.instanceLink)
    , processes(*parts.processes)
    , urlLoader(*parts.urlLoader)
    , urlDownloads(*parts.urlDownloads)
    , netServices(*parts.netServices)
    , components(*parts.components)
    , pluginLoader(*parts.pluginLoader)
    , keyboard(*parts.keyboard)
    , remoteReceiver(*parts.remoteReceiver)
    , serialDevices(*parts.serialDevices)
    , lines(*parts.lines)
    , clock(*parts.clock)
    , m_disk(std::move(parts.disk))
{
}

FakeSystem::~FakeSystem()
{
    // Here and not in the base: shared objects may write to the disk when they go.
    SystemScope scope(*this);
    releaseShared();
    userDefaults().synchronize();
}

QVariantMap FakeSystem::defaultHostInfo()
{
    return {{"CFBundleIdentifier", "com.quorwell.test"},
            {"CFBundleName", "Test Host"},
            {"CFBundleShortVersionString", "2.1b3"},
            {"CFBundleVersion", "1234"},
            {"QWApplicationCode", "TH"}};
}

QString FakeSystem::real(const QString &path) const
{
    return locations().mapped(path);
}

void FakeSystem::writeFile(const QString &path, const QByteArray &data) const
{
    write(real(path), data);
}

void FakeSystem::makeDirectory(const QString &path) const
{
    QDir().mkpath(real(path));
}

std::optional<QByteArray> FakeSystem::readFile(const QString &path) const
{
    QFile file(real(path));
    return file.open(QIODevice::ReadOnly) ? std::optional(file.readAll()) : std::nullopt;
}

void FakeSystem::writePropertyList(const QString &path, const QVariant &list) const
{
    writeFile(path, PropertyList::toXml(list));
}

QVariant FakeSystem::readPropertyList(const QString &path) const
{
    return PropertyList::fromFile(real(path)).value_or(QVariant());
}

void FakeSystem::addVSTBundle(const QString &path, const QString &identifier) const
{
    writePropertyList(path + "/Contents/Info.plist", QVariantMap{{"CFBundleIdentifier", identifier}});
}

void FakeSystem::addHostResource(const QString &name, const QByteArray &data) const
{
    writeFile(mainBundle().path() + "/Contents/Resources/" + name, data);
}

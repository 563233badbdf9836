#pragma once

#include "FakeAlerts.h"
#include "FakeChildProcesses.h"
#include "FakeClock.h"
#include "FakeComponentRegistry.h"
#include "FakeFilePanels.h"
#include "FakeInstanceLink.h"
#include "FakeKeyboardState.h"
#include "FakeNetServices.h"
#include "FakePluginLoader.h"
#include "FakeRemoteReceiver.h"
#include "FakeSerialLines.h"
#include "FakeSerialRegistry.h"
#include "FakeUrlDownloads.h"
#include "FakeUrlLoader.h"
#include "FakeWebViews.h"
#include "FakeWorkspace.h"

#include <QWPlatform/System.h>
#include <QWPlatform/machine/SystemScope.h>

#include <QTemporaryDir>

/// A whole machine that the test scripts. Its disk is a temporary folder: "home" is the home folder, "root" stands for
/// "/" in "/Library/…", "Host.app" is the main bundle.
class FakeSystem : public platform::System
{
public:
    FakeSystem();
    ~FakeSystem() override;

    /// The real path behind a documented one ("~/…", "/Library/…", absolute).
    QString real(const QString &path) const;

    /// Writes a file and the folders above it.
    void writeFile(const QString &path, const QByteArray &data) const;
    void makeDirectory(const QString &path) const;

    /// The file's bytes; none when it cannot be read.
    std::optional<QByteArray> readFile(const QString &path) const;

    /// Writes @p list as a property list, or reads one.
    void writePropertyList(const QString &path, const QVariant &list) const;
    QVariant readPropertyList(const QString &path) const;

    /// Makes a ".vst" bundle with an Info.plist that holds @p identifier.
    void addVSTBundle(const QString &path, const QString &identifier = "com.example.plugin") const;

    /// Puts a file into the host's resources.
    void addHostResource(const QString &name, const QByteArray &data) const;

    FakeAlerts &alerts;
    FakeFilePanels &filePanels;
    FakeWorkspace &workspace;
    FakeWebViews &webViews;
    FakeInstanceLink &instanceLink;
    FakeChildProcesses &processes;
    FakeUrlLoader &urlLoader;
    FakeUrlDownloads &urlDownloads;
    FakeNetServices &netServices;
    FakeComponentRegistry &components;
    FakePluginLoader &pluginLoader;
    FakeKeyboardState &keyboard;
    FakeRemoteReceiver &remoteReceiver;
    FakeSerialRegistry &serialDevices;
    FakeSerialLines &lines;
    FakeClock &clock;

    /// Keys of the host's Info.plist of a FakeSystem that is made afterwards; the test's own to set.
    static QVariantMap defaultHostInfo();

private:
    struct Parts;
    explicit FakeSystem(Parts parts);

    std::unique_ptr<QTemporaryDir> m_disk;
};

#include "ComponentBundle.h"
#include "OrdinaryUser.h"
#include "PluginTestSupport.h"
#include "fakes/QWTestMain.h"

#include <QWUtilities/plugins/QWAUManager.h>

using platform::SystemScope;

namespace
{
/// Identifier that a scan finds for the unit of the resource file.
QString scannedIdentifier(FakeSystem &system)
{
    system.components.add("aufx", "Dlay", "Acme", "Acme: Super Delay");
    system.processes.handler = acceptingValidator(system, auHandOff);
    QWAUManager manager;
    manager.validate();
    const QVariantMap state = manager.database().front()->state();
    return state.contains("identifier") ? state["identifier"].toString() : QString("none");
}
} // namespace

/// Where the identifier of a unit comes from: the component bundle whose resource file registers it.
class tst_AUIdentifiers : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void identifierComesFromTheResourceFile();
    void identifierOfTheUsersFolderWins();
    void firstOfTwoIdentifiersIsTaken();
    void identifierFallsBack_data();
    void identifierFallsBack();
    void bundlesThatTellNothingAreSkipped_data();
    void bundlesThatTellNothingAreSkipped();
    void componentFolderWithoutPermissionAddsNothing();
};

void tst_AUIdentifiers::identifierComesFromTheResourceFile()
{
    FakeSystem system;
    SystemScope current(system);
    addComponentBundle(system, "/Library/Audio/Plug-Ins/Components/Super.Delay.component",
                       {{"CFBundleIdentifier", "com.acme.delay"}});
    QCOMPARE(scannedIdentifier(system), "com.acme.delay");
}

void tst_AUIdentifiers::identifierOfTheUsersFolderWins()
{
    FakeSystem system;
    SystemScope current(system);
    // The system's bundle of the same identifier registers another unit; only the user's counts.
    QByteArray other = resourceFileBytes();
    other.replace("Dlay", "Othr");
    addComponentBundle(system, "/Library/Audio/Plug-Ins/Components/A.component",
                       {{"CFBundleIdentifier", "com.acme.delay"}}, other);
    addComponentBundle(system, "~/Library/Audio/Plug-Ins/Components/B.component",
                       {{"CFBundleIdentifier", "com.acme.delay"}});
    QCOMPARE(scannedIdentifier(system), "com.acme.delay");

    FakeSystem turned;
    SystemScope inner(turned);
    addComponentBundle(turned, "/Library/Audio/Plug-Ins/Components/A.component",
                       {{"CFBundleIdentifier", "com.acme.delay"}});
    addComponentBundle(turned, "~/Library/Audio/Plug-Ins/Components/B.component",
                       {{"CFBundleIdentifier", "com.acme.delay"}}, other);
    QCOMPARE(scannedIdentifier(turned), "none");
}

void tst_AUIdentifiers::firstOfTwoIdentifiersIsTaken()
{
    FakeSystem system;
    SystemScope current(system);
    const QString folder = "/Library/Audio/Plug-Ins/Components";
    addComponentBundle(system, folder + "/A.component", {{"CFBundleIdentifier", "com.acme.b"}});
    addComponentBundle(system, folder + "/B.component", {{"CFBundleIdentifier", "com.acme.a"}});
    addComponentBundle(system, folder + "/C.component", {{"CFBundleIdentifier", "com.acme.c"}});
    QCOMPARE(scannedIdentifier(system), "com.acme.a");
}

void tst_AUIdentifiers::identifierFallsBack_data()
{
    QTest::addColumn<QVariantMap>("info");
    QTest::addColumn<QString>("identifier");
    QTest::newRow("executable") << QVariantMap{{"CFBundleExecutable", "Delay"}, {"CFBundleName", "Name"}}
                                << "com.unknown.Delay";
    QTest::newRow("name") << QVariantMap{{"CFBundleName", "Name"}} << "com.unknown.Name";
    QTest::newRow("identifier first") << QVariantMap{{"CFBundleIdentifier", "com.a"}, {"CFBundleExecutable", "D"}}
                                      << "com.a";
}

void tst_AUIdentifiers::identifierFallsBack()
{
    QFETCH(QVariantMap, info);
    QFETCH(QString, identifier);
    FakeSystem system;
    SystemScope current(system);
    addComponentBundle(system, "/Library/Audio/Plug-Ins/Components/A.component", info);
    QCOMPARE(scannedIdentifier(system), identifier);
}

void tst_AUIdentifiers::bundlesThatTellNothingAreSkipped_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QByteArray>("resources");
    const QString folder = "/Library/Audio/Plug-Ins/Components/";
    QByteArray noThing = resourceFileBytes();
    noThing.replace("thng", "thnx");
    QTest::newRow("extension in capitals") << folder + "A.Component" << resourceFileBytes();
    QTest::newRow("another extension") << folder + "A.audiocomp" << resourceFileBytes();
    QTest::newRow("in a folder") << folder + "Acme/A.component" << resourceFileBytes();
    QTest::newRow("no resource file") << folder + "A.component" << QByteArray();
    QTest::newRow("no such resource") << folder + "A.component" << noThing;
    QTest::newRow("cut short") << folder + "A.component" << resourceFileBytes().first(300);
}

void tst_AUIdentifiers::bundlesThatTellNothingAreSkipped()
{
    QFETCH(QString, path);
    QFETCH(QByteArray, resources);
    FakeSystem system;
    SystemScope current(system);
    addComponentBundle(system, path, {{"CFBundleIdentifier", "com.acme.delay"}}, resources);
    QCOMPARE(scannedIdentifier(system), "none");
}

void tst_AUIdentifiers::componentFolderWithoutPermissionAddsNothing()
{
    FakeSystem system;
    SystemScope current(system);
    const QString folder = "/Library/Audio/Plug-Ins/Components";
    addComponentBundle(system, folder + "/A.component", {{"CFBundleIdentifier", "com.acme.delay"}});
    QVERIFY(setForbidden(system, folder, true));
    const OrdinaryUser user;
    QVERIFY(user.isReady);
    QCOMPARE(scannedIdentifier(system), "none");
    QVERIFY(system.alerts.shown.isEmpty());
}

QW_TEST_MAIN(tst_AUIdentifiers)
#include "tst_AUIdentifiers.moc"

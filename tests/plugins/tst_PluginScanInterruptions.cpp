#include "CatalogTestSupport.h"
#include "ComponentBundle.h"
#include "MenuTestSupport.h"
#include "OwnGraylist.h"
#include "PluginTestSupport.h"
#include "fakes/QWTestMain.h"

#include <QWUtilities/plugins/QWAUManager.h>
#include <QWUtilities/plugins/QWVSTManager.h>

using platform::ChildProcessRequest;
using platform::ChildProcessResult;
using platform::SystemScope;

namespace
{
using Scan = void (*)();

template <class Manager>
void scan()
{
    Manager().validate();
}
} // namespace

/// What ends or shortens a scan: the key that skips validation, and exceptions.
class tst_PluginScanInterruptions : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void skipKeyStopsValidationOfUnitsForGood();
    void otherKeysDoNotSkip_data();
    void otherKeysDoNotSkip();
    void skipKeyIsSampledOncePerNewUnit();
    void exceptionsAreNotReportedDuringTheScan_data();
    void exceptionsAreNotReportedDuringTheScan();
    void unitScanGoesOnAfterOneThatAnExceptionEnded();
    void skipKeyStopsValidationOfBundlesForGood();
    void bundleScanGoesOnAfterOneThatAnExceptionEnded();
};

void tst_PluginScanInterruptions::skipKeyStopsValidationOfUnitsForGood()
{
    FakeSystem system;
    SystemScope current(system);
    system.components.add("aufx", "Aaaa", "Acme", "Acme: A");
    system.components.add("aufx", "Bbbb", "Acme", "Acme: B");
    system.components.add("aufx", "Cccc", "Acme", "Acme: C");
    system.processes.handler = [&](const ChildProcessRequest &) {
        system.keyboard.map[0] = 0x02; // pressed while A is tried
        system.writePropertyList(auHandOff, QVariantMap{});
        return ChildProcessResult{};
    };
    QWAUManager manager;
    manager.validate();
    QCOMPARE(system.processes.runs.size(), std::size_t(1));
    QCOMPARE(namesOf(QWAUManager()), (QStringList{"A", "B", "C"}));
    QCOMPARE(titlesOf(*submenuOf(*manager.effectsMenuWithTargetAction(this, "insertPlugin:"), "Acme")),
             (QStringList{"A", "B", "C"}));

    system.keyboard.map[0] = 0;
    system.components.add("aufx", "Dddd", "Acme", "Acme: D");
    manager.validate(); // still skipping
    QCOMPARE(system.processes.runs.size(), std::size_t(1));
    QWAUManager later;
    later.validate(); // not skipping, but all are recorded
    QCOMPARE(system.processes.runs.size(), std::size_t(1));
    QVERIFY(!later.database().back()->ignore());
}

void tst_PluginScanInterruptions::otherKeysDoNotSkip_data()
{
    QTest::addColumn<int>("byte");
    for (const int byte : {0x00, 0x01, 0x03, 0x04, 0x82, 0xFF})
        QTest::addRow("0x%02x", byte) << byte;
}

void tst_PluginScanInterruptions::otherKeysDoNotSkip()
{
    QFETCH(int, byte);
    FakeSystem system;
    SystemScope current(system);
    system.keyboard.map[0] = static_cast<quint8>(byte);
    system.keyboard.map[1] = 0x02;
    system.components.add("aufx", "Aaaa", "Acme", "Acme: A");
    system.processes.handler = acceptingValidator(system, auHandOff);
    QWAUManager().validate();
    QCOMPARE(system.processes.runs.size(), std::size_t(1));
}

void tst_PluginScanInterruptions::skipKeyIsSampledOncePerNewUnit()
{
    FakeSystem system;
    SystemScope current(system);
    const OwnGraylist graylist(auGraylist, QVariantList{graylistEntry("Aaaa", "Acme", "A")});
    system.components.add("aufx", "Aaaa", "Acme", "Acme: A"); // ignored, and sampled all the same
    system.components.add("aufx", "Bbbb", "Acme", "Acme: B");
    system.components.add("aufx", "Nona", "Acme", ""); // gets no record
    system.processes.handler = acceptingValidator(system, auHandOff);
    HostsOwn<QWAUManager> manager;
    manager.validate();
    QCOMPARE(system.keyboard.asked, 2);
    manager.validate();
    QCOMPARE(system.keyboard.asked, 2);
}

void tst_PluginScanInterruptions::exceptionsAreNotReportedDuringTheScan_data()
{
    QTest::addColumn<Scan>("scan");
    QTest::newRow("units") << Scan(scan<QWAUManager>);
    QTest::newRow("bundles") << Scan(scan<QWVSTManager>);
}

void tst_PluginScanInterruptions::exceptionsAreNotReportedDuringTheScan()
{
    QFETCH(Scan, scan);
    FakeSystem system;
    SystemScope current(system);
    auto *application = QWApplication::sharedApplication();
    application->setHandleExceptions(true);
    system.components.add("aufx", "Aaaa", "Acme", "Acme: A");
    system.addVSTBundle(systemFolder + "/A.vst");
    bool handledDuringScan = true;
    system.processes.handler = [&](const ChildProcessRequest &) {
        handledDuringScan = application->handlesExceptions();
        return ChildProcessResult{};
    };
    scan();
    QVERIFY(!handledDuringScan);
    QVERIFY(application->handlesExceptions());
}

void tst_PluginScanInterruptions::unitScanGoesOnAfterOneThatAnExceptionEnded()
{
    FakeSystem system;
    SystemScope current(system);
    system.components.add("aufx", "Aaaa", "Acme", "Acme: A");
    system.processes.handler = [](const ChildProcessRequest &) -> ChildProcessResult { throw std::bad_alloc(); };
    QWAUManager manager;
    QVERIFY_EXCEPTION_THROWN(manager.validate(), std::bad_alloc);
    QVERIFY(QWApplication::sharedApplication()->handlesExceptions());
    // Installed in between, with the bundle that tells its identifier.
    addComponentBundle(system, "/Library/Audio/Plug-Ins/Components/D.component",
                       {{"CFBundleIdentifier", "com.acme.delay"}});
    system.components.add("aufx", "Dlay", "Acme", "Acme: D");
    system.processes.handler = acceptingValidator(system, auHandOff);
    manager.validate();
    QCOMPARE(namesOf(manager), (QStringList{"A", "D"}));
    QCOMPARE(manager.database().back()->identifier(), "com.acme.delay");
}

void tst_PluginScanInterruptions::skipKeyStopsValidationOfBundlesForGood()
{
    FakeSystem system;
    SystemScope current(system);
    system.addVSTBundle(systemFolder + "/A.vst");
    system.addVSTBundle(systemFolder + "/B.vst");
    system.processes.handler = acceptingValidator(system, vstHandOff);
    system.keyboard.map[0] = 0x02;
    QWVSTManager manager;
    manager.validate();
    QVERIFY(system.processes.runs.empty());
    QCOMPARE(outline(*manager.effectsMenuWithTargetAction(this, "insertPlugin:")), "A, B");
    system.keyboard.map[0] = 0;
    system.addVSTBundle(systemFolder + "/C.vst");
    manager.validate();
    QWVSTManager().validate(); // recorded already
    QVERIFY(system.processes.runs.empty());
    QCOMPARE(system.keyboard.asked, 3);
}

void tst_PluginScanInterruptions::bundleScanGoesOnAfterOneThatAnExceptionEnded()
{
    FakeSystem system;
    SystemScope current(system);
    system.addVSTBundle(systemFolder + "/Acme/A.vst");
    system.processes.handler = [](const ChildProcessRequest &) -> ChildProcessResult { throw std::bad_alloc(); };
    QWVSTManager manager;
    QVERIFY_EXCEPTION_THROWN(manager.validate(), std::bad_alloc);
    QVERIFY(QWApplication::sharedApplication()->handlesExceptions());
    system.addVSTBundle(systemFolder + "/Acme/B.vst");
    system.processes.handler = acceptingValidator(system, vstHandOff);
    manager.validate();
    QCOMPARE(pathsOf(manager), (QStringList{systemFolder + "/Acme/A.vst", systemFolder + "/Acme/B.vst"}));
}

QW_TEST_MAIN(tst_PluginScanInterruptions)
#include "tst_PluginScanInterruptions.moc"

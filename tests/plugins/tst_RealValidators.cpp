#include "CatalogTestSupport.h"
#include "MenuTestSupport.h"
#include "PluginTestSupport.h"
#include "fakes/QWTestMain.h"

#include <QWBase/QWApplicationLog.h>
#include <QWBase/QWFile.h>
#include <QWPlatform/devices/components/ComponentRegistry.h>
#include <QWPlatform/machine/SystemServices.h>
#include <QWUtilities/plugins/QWAUManager.h>
#include <QWUtilities/plugins/QWVSTManager.h>

#include <QtEndian>

using platform::ChildProcessRequest;
using platform::SystemScope;
using platform::SystemServices;

namespace
{
/// A fake machine on which children are real: they get its disk.
class RealChildren
{
public:
    RealChildren()
        : m_real(*SystemServices::current().childProcesses)
        , m_scope(system)
    {
        system.processes.handler = [this](const ChildProcessRequest &request) {
            QStringList arguments{"HOME=" + system.real("~"), "QW_LIBRARY_ROOT=" + system.real("/Library").chopped(8)};
            ChildProcessRequest onItsDisk = request;
            onItsDisk.launchPath = "/usr/bin/env";
            onItsDisk.arguments = arguments + QStringList{request.launchPath} + request.arguments;
            return m_real.run(onItsDisk);
        };
    }

    FakeSystem system;

private:
    platform::ChildProcesses &m_real;
    SystemScope m_scope;
};

void installBundle(const QString &name)
{
    QVERIFY(QWFile::createDirectoryAtPath("~/Library/Audio/Plug-Ins/VST"));
    QVERIFY(QWFile::copyPathToPath(QString(QW_TEST_PLUGINS "/VST/%1.vst").arg(name),
                                   QString("~/Library/Audio/Plug-Ins/VST/%1.vst").arg(name)));
}
} // namespace

class tst_RealValidators : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void stubThatWritesTheHandOffIsBelieved();
    void vstBundlesAreTriedForReal();
    void vstCatalogStaysAsItIs();
    void lv2UnitsAreTriedForReal();
};

void tst_RealValidators::initTestCase()
{
    qputenv("LV2_PATH", QW_TEST_PLUGINS "/lv2");
}

void tst_RealValidators::stubThatWritesTheHandOffIsBelieved()
{
    auto &real = *SystemServices::current().childProcesses;
    FakeSystem system;
    SystemScope current(system);
    system.addVSTBundle("/Library/Audio/Plug-Ins/VST/Echo.vst");
    system.makeDirectory("~/Library/Application Support/Quorwell");
    system.processes.handler = [&](const ChildProcessRequest &) {
        return real.run({"/bin/sh",
                         {"-c", "echo '<plist><dict><key>isInstrument</key><true/></dict></plist>' > \"$0\"",
                          system.real(vstHandOff)}});
    };
    QWVSTManager manager;
    manager.validate();
    QVERIFY(system.alerts.shown.isEmpty());
    QVERIFY(manager.database().front()->isInstrument());
}

void tst_RealValidators::vstBundlesAreTriedForReal()
{
    RealChildren machine;
    for (const char *name :
         {"Good", "Instrument", "Refusing", "NoEntry", "CrashAtLoad", "CrashAtOpen", "Exiting", "Printing"})
        installBundle(name);
    QVERIFY(!QTest::currentTestFailed());
    machine.system.addVSTBundle("~/Library/Audio/Plug-Ins/VST/Hollow.vst");
    QWVSTManager manager;
    manager.validate();
    QStringList failures;
    for (const char *name : {"CrashAtLoad", "CrashAtOpen", "Exiting", "Hollow", "NoEntry", "Refusing"})
        failures.append(QString("The '%1' VST failed to validate and will be ignored.").arg(name));
    QCOMPARE(sorted(machine.system.alerts.shown), failures);
    QCOMPARE(titlesOf(*manager.effectsMenuWithTargetAction(this, "insertPlugin:")), (QStringList{"Good", "Printing"}));
    QCOMPARE(titlesOf(*manager.instrumentsMenuWithTargetAction(this, "insertPlugin:")), QStringList{"Instrument"});
    QFile log(QWApplicationLog::sharedLog().path());
    QVERIFY(log.open(QIODevice::ReadOnly));
    const QByteArray logged = log.readAll();
    QVERIFY2(
        logged.contains("'Printing' passed its trial, and said: The plug-in talks to standard output.\n    Twice."),
        logged.constData());
    QVERIFY2(logged.contains("CrashAtOpen.vst: The plug-in crashes (opening): Segmentation fault."),
             logged.constData());
}

void tst_RealValidators::vstCatalogStaysAsItIs()
{
    RealChildren machine;
    installBundle("Good");
    QWVSTManager().validate();
    const auto before = machine.system.readFile(vstDatabase);
    QWVSTManager manager;
    manager.validate();
    QCOMPARE(machine.system.processes.runs.size(), std::size_t(1));
    QCOMPARE(machine.system.readFile(vstDatabase), before);
    QVERIFY(manager.database().front()->path().startsWith('~'));
    QVERIFY(!manager.database().front()->name().isEmpty());
}

void tst_RealValidators::lv2UnitsAreTriedForReal()
{
    auto &registry = *SystemServices::current().componentRegistry;
    std::vector<FakeComponentRegistry::Entry> installed;
    for (const char *type : {"aufx", "aumf", "aumu", "augn"})
        for (const auto &unit : registry.componentsOfType(qFromBigEndian<quint32>(type)))
            installed.push_back({unit, registry.nameOfComponent(unit), {}});
    QVERIFY(installed.size() >= 8);
    std::erase_if(installed, [](const auto &entry) { return entry.name.contains("Hanging"); }); // would take its 30 s
    RealChildren machine;
    machine.system.components.entries = installed;
    QWAUManager manager;
    manager.validate();
    QStringList good;
    for (const auto &record : manager.database())
        if (!record->ignore())
            good.append(record->name());
    for (const char *name : {"Good", "Instrument", "Generator", "MusicEffect", "FixedBlocks", "Printing"})
        QVERIFY2(!good.filter(name).isEmpty(), qPrintable(good.join(", ")));
    for (const char *name : {"CrashAtLoad", "CrashAtInstantiate", "Exiting", "Refusing", "NeedsMore", "NotFinite"})
        QVERIFY2(good.filter(name).isEmpty(), qPrintable(good.join(", ")));
    QCOMPARE(machine.system.alerts.shown.size() + good.size(), qsizetype(installed.size()));
}

QW_TEST_MAIN(tst_RealValidators)
#include "tst_RealValidators.moc"

#include "CatalogTestSupport.h"
#include "MenuTestSupport.h"
#include "PluginTestSupport.h"
#include "fakes/QWTestMain.h"

#include <QWPlatform/foundation/PropertyList.h>
#include <QWUtilities/plugins/QWVSTManager.h>

#include <QDir>

#include <fcntl.h>
#include <sys/stat.h>

using platform::ChildProcessRequest;
using platform::ChildProcessResult;
using platform::SystemScope;

namespace
{
/// Gives the file at @p path another modification date, later by @p nanoseconds.
void touch(const FakeSystem &system, const QString &path, long nanoseconds)
{
    const QByteArray real = system.real(path).toUtf8();
    struct stat status;
    QCOMPARE(::stat(real.constData(), &status), 0);
    timespec times[2] = {status.st_mtim, status.st_mtim};
    times[1].tv_nsec = (times[1].tv_nsec + nanoseconds) % 1'000'000'000;
    QCOMPARE(::utimensat(AT_FDCWD, real.constData(), times, 0), 0);
}
} // namespace

class tst_QWVSTManager : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void nothingInstalled();
    void validatorGetsTheExpandedPath();
    void recordKeepsItsTildeWhateverIsHandedOff();
    void recordIsSavedBeforeItIsTriedAndAgainAfterwards();
    void bundleThatFailsIsTriedOnceAndLeftOutOfMenus();
    void changedBundleIsTriedAgainAndMovesToTheEnd();
    void aNanosecondIsAChange();
    void vanishedBundleIsForgotten();
    void unchangedMachineWritesNothing();
    void hostsChangesToARecordAreSaved();
    void textsAreLocalized();
};

void tst_QWVSTManager::nothingInstalled()
{
    FakeSystem system;
    SystemScope current(system);
    QWVSTManager manager;
    manager.validate();
    QVERIFY(manager.database().empty());
    QVERIFY(system.alerts.shown.isEmpty());
    QVERIFY(!system.readFile(vstDatabase));
}

void tst_QWVSTManager::validatorGetsTheExpandedPath()
{
    FakeSystem system;
    SystemScope current(system);
    system.addVSTBundle(userFolder + "/A b.vst");
    system.processes.handler = acceptingValidator(system, vstHandOff);
    QWVSTManager().validate();
    const ChildProcessRequest &run = system.processes.runs.at(0);
    QVERIFY2(
        run.launchPath.endsWith("/QWUtilities.framework/Versions/A/VST Validator.app/Contents/MacOS/VST Validator"),
        qPrintable(run.launchPath));
    QCOMPARE(run.arguments, QStringList{system.real(userFolder + "/A b.vst")});
}

void tst_QWVSTManager::recordKeepsItsTildeWhateverIsHandedOff()
{
    FakeSystem system;
    SystemScope current(system);
    system.addVSTBundle(userFolder + "/Echo.vst");
    system.processes.handler = [&](const ChildProcessRequest &request) {
        const auto description = QWVSTDescription::descriptionWithPath(request.arguments.front());
        description->setInstrument(true);
        system.writePropertyList(vstHandOff, description->state());
        return ChildProcessResult{};
    };
    QWVSTManager manager;
    manager.validate();
    manager.validate();
    QWVSTManager().validate();
    QCOMPARE(pathsOf(manager), QStringList{userFolder + "/Echo.vst"});
    QVERIFY(manager.database().front()->isInstrument());
    QCOMPARE(system.processes.runs.size(), std::size_t(1));
    QVERIFY(!system.readFile(vstHandOff));
}

void tst_QWVSTManager::recordIsSavedBeforeItIsTriedAndAgainAfterwards()
{
    FakeSystem system;
    SystemScope current(system);
    system.addVSTBundle(systemFolder + "/A.vst");
    system.addVSTBundle(systemFolder + "/B.vst");
    QList<qsizetype> saved;
    system.processes.handler = [&](const ChildProcessRequest &) {
        saved.append(system.readPropertyList(vstDatabase).toList().size());
        system.writePropertyList(vstHandOff, QVariantMap{{"vendor", "Acme"}});
        return ChildProcessResult{};
    };
    QWVSTManager manager;
    manager.validate();
    QCOMPARE(saved, (QList<qsizetype>{1, 2}));
    const QVariantList states = statesOf(manager);
    QCOMPARE(*system.readFile(vstDatabase), platform::PropertyList::toXml(states));
    QCOMPARE(states.back().toMap().value("vendor"), QVariant("Acme"));
}

void tst_QWVSTManager::bundleThatFailsIsTriedOnceAndLeftOutOfMenus()
{
    FakeSystem system;
    SystemScope current(system);
    system.makeDirectory(systemFolder + "/Acme/Echo.vst"); // without Info.plist
    QWVSTManager manager;
    manager.validate();
    manager.validate();
    QWVSTManager().validate();
    QCOMPARE(system.processes.runs.size(), std::size_t(1));
    QCOMPARE(system.alerts.shown, QStringList{"The 'Echo' VST failed to validate and will be ignored."});
    QCOMPARE(system.alerts.alerts.front().informativeText, "");
    QCOMPARE(outline(*manager.effectsMenuWithTargetAction(this, "insertPlugin:")), "No plug-ins found");
}

void tst_QWVSTManager::changedBundleIsTriedAgainAndMovesToTheEnd()
{
    FakeSystem system;
    SystemScope current(system);
    QWVSTManager manager;
    system.processes.handler = acceptingValidator(system, vstHandOff);
    for (const char *name : {"/A.vst", "/B.vst", "/C.vst"}) {
        system.addVSTBundle(systemFolder + name);
        manager.validate();
    }
    touch(system, systemFolder + "/A.vst", 500'000'000);
    manager.validate();
    QCOMPARE(pathsOf(manager),
             (QStringList{systemFolder + "/B.vst", systemFolder + "/C.vst", systemFolder + "/A.vst"}));
    QCOMPARE(pathsOf(QWVSTManager()), pathsOf(manager));
    QCOMPARE(system.processes.runs.size(), std::size_t(4));
}

void tst_QWVSTManager::aNanosecondIsAChange()
{
    FakeSystem system;
    SystemScope current(system);
    system.addVSTBundle(systemFolder + "/A.vst");
    system.processes.handler = acceptingValidator(system, vstHandOff);
    QWVSTManager().validate();
    QWVSTManager().validate();
    QCOMPARE(system.processes.runs.size(), std::size_t(1));
    touch(system, systemFolder + "/A.vst", 1);
    QWVSTManager().validate();
    QCOMPARE(system.processes.runs.size(), std::size_t(2));
}

void tst_QWVSTManager::vanishedBundleIsForgotten()
{
    FakeSystem system;
    SystemScope current(system);
    system.addVSTBundle(systemFolder + "/A.vst");
    system.addVSTBundle(systemFolder + "/B.vst");
    QWVSTManager manager; // both fail, and are ignored
    manager.validate();
    QVERIFY(QDir(system.real(systemFolder + "/A.vst")).removeRecursively());
    manager.validate();
    QCOMPARE(pathsOf(QWVSTManager()), QStringList{systemFolder + "/B.vst"});
    system.addVSTBundle(systemFolder + "/A.vst");
    manager.validate(); // the only way back for one that failed
    QCOMPARE(system.processes.runs.size(), std::size_t(3));
}

void tst_QWVSTManager::unchangedMachineWritesNothing()
{
    FakeSystem system;
    SystemScope current(system);
    system.addVSTBundle(userFolder + "/A.vst");
    system.addVSTBundle(systemFolder + "/Acme/B.vst");
    system.processes.handler = acceptingValidator(system, vstHandOff);
    QWVSTManager manager;
    manager.validate();
    system.writeFile(vstDatabase, *system.readFile(vstDatabase) + " "); // would be gone after a save
    manager.validate();
    QWVSTManager().validate();
    QVERIFY(system.readFile(vstDatabase)->endsWith(' '));
    QCOMPARE(system.processes.runs.size(), std::size_t(2));
}

void tst_QWVSTManager::hostsChangesToARecordAreSaved()
{
    FakeSystem system;
    SystemScope current(system);
    system.addVSTBundle(systemFolder + "/A.vst");
    system.processes.handler = acceptingValidator(system, vstHandOff);
    QWVSTManager manager;
    manager.validate();
    manager.database().front()->setIgnore(true);
    system.addVSTBundle(systemFolder + "/B.vst");
    manager.validate(); // saves
    QVERIFY(QWVSTManager().database().front()->ignore());
}

void tst_QWVSTManager::textsAreLocalized()
{
    FakeSystem system;
    SystemScope current(system);
    system.addHostResource(
        "Localizable.strings",
        "\"The '%@' VST failed to validate and will be ignored.\" = \"%@ fehlt\";"
        "\"The '%@' VST has been known to cause problems with Quorwell Engineering products.\" = \"%@ stört\";"
        "\"Would you like to ignore this VST or would you like to continue to validate it and use it?\" = \"Und?\";"
        "\"Ignore\" = \"Weglassen\"; \"Use\" = \"Nehmen\"; \"No plug-ins found\" = \"Nichts da\";");
    system.addVSTBundle(systemFolder + "/100%@.vst");
    system.addVSTBundle(userFolder + "/Own Name.vst", "com.glimmerfrog.wobbledelay"); // on the framework's own graylist
    QWVSTManager manager;
    manager.validate();
    QCOMPARE(system.alerts.shown, (QStringList{"100%@ fehlt", "Own Name stört"}));
    QCOMPARE(system.alerts.alerts[1].informativeText, "Und?");
    QCOMPARE(system.alerts.alerts[1].buttons, (QStringList{"Weglassen", "Nehmen"}));
    QCOMPARE(outline(*manager.instrumentsMenuWithTargetAction(this, "insertPlugin:")), "Nichts da");
}

QW_TEST_MAIN(tst_QWVSTManager)
#include "tst_QWVSTManager.moc"

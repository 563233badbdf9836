#include "CatalogTestSupport.h"
#include "MenuTestSupport.h"
#include "OrdinaryUser.h"
#include "PluginTestSupport.h"
#include "fakes/QWTestMain.h"

#include <QWBase/QWApplicationLog.h>

#include <QFile>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

using platform::ChildProcessRequest;
using platform::ChildProcessResult;
using platform::SystemScope;

namespace
{
const QString supportFolder = "~/Library/Application Support/Quorwell";
const QString trouble = "New plug-ins cannot be tried.";

/// A machine of two units and two bundles, for a user who may not do everything.
class Machine
{
public:
    Machine()
        : m_scope(system)
    {
        system.makeDirectory(supportFolder);
        system.components.add("aufx", "Dlay", "Acme", "Acme: Delay");
        system.components.add("aufx", "Revb", "Acme", "Acme: Reverb");
        system.addVSTBundle(systemFolder + "/Chorus.vst");
        system.addVSTBundle(systemFolder + "/Echo.vst");
        system.processes.handler = [this](const ChildProcessRequest &request) {
            const bool isUnit = request.launchPath.endsWith("AU Validator");
            return acceptingValidator(system, isUnit ? auHandOff : vstHandOff)(request);
        };
    }

    /// Nothing can be made in the support folder, or again everything.
    void setFull(bool isFull) const
    {
        const QByteArray folder = QFile::encodeName(system.real(supportFolder));
        QCOMPARE(::chmod(folder.constData(), isFull ? 0555 : 0755), 0);
    }

    /// Whether some trial holds the lock now.
    bool isLocked() const
    {
        const int file =
            ::open(QFile::encodeName(system.real(supportFolder + "/validation.lock")).constData(), O_RDONLY);
        const bool isLocked = file >= 0 && ::flock(file, LOCK_EX | LOCK_NB) != 0;
        ::close(file);
        return isLocked;
    }

    FakeSystem system;
    const OrdinaryUser user;

private:
    SystemScope m_scope;
};

QByteArray logged()
{
    QFile file(QWApplicationLog::sharedLog().path());
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}
} // namespace

/// What keeps plug-ins from being tried without any fault of theirs, and what is told of trials.
class tst_PluginTrialTrouble : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void placeThatTakesNoFilesIsToldOnceAndNothingIsTried();
    void placeThatFillsUpCondemnsNothing();
    void bundleInWorkIsDroppedToo();
    void nothingIsAskedOfThePlaceWithoutATrial();
    void troubleIsToldAgainWhenTheSameCatalogLooksAgain();
    void trialHoldsTheLockUntilItsResultIsTaken();
    void otherProgramThatDoesNotEndCondemnsNothing();
    void whatIsSaidGoesToTheLog();
    void whatIsLoggedDoesNothingToATerminal();
    void silentFailureIsLoggedToo();
    void textsAreLocalized();
};

void tst_PluginTrialTrouble::placeThatTakesNoFilesIsToldOnceAndNothingIsTried()
{
    Machine machine;
    QVERIFY(machine.user.isReady);
    machine.setFull(true);
    QWAUManager units;
    QWVSTManager bundles;
    units.validate();
    bundles.validate();
    QCOMPARE(machine.system.alerts.shown, QStringList{trouble});
    const QString why = machine.system.alerts.alerts.front().informativeText;
    QVERIFY2(
        why.startsWith("The folder '" + machine.system.real(supportFolder) + "' takes no files: Permission denied."),
        qPrintable(why));
    QVERIFY(machine.system.processes.runs.empty());
    QVERIFY(units.database().empty() && bundles.database().empty());

    machine.setFull(false);
    units.validate();
    bundles.validate();
    QCOMPARE(namesOf(units), (QStringList{"Delay", "Reverb"}));
    QCOMPARE(outline(*bundles.effectsMenuWithTargetAction(this, "insertPlugin:")), "Chorus, Echo");
    QCOMPARE(machine.system.alerts.shown.size(), 1);
}

void tst_PluginTrialTrouble::placeThatFillsUpCondemnsNothing()
{
    Machine machine;
    machine.system.components.add("aufx", "Zoom", "Acme", "Acme: Zoom");
    const auto accept = machine.system.processes.handler;
    machine.system.processes.handler = [&](const ChildProcessRequest &request) {
        if (machine.system.processes.runs.size() == 1)
            return accept(request);
        machine.setFull(true);
        return ChildProcessResult{.started = true, .exited = true, .status = 1, .output = {}};
    };
    QWAUManager manager;
    manager.validate();
    QCOMPARE(machine.system.alerts.shown, QStringList{trouble});
    QCOMPARE(machine.system.processes.runs.size(), std::size_t(2));
    QCOMPARE(namesOf(manager), QStringList{"Delay"});
    QCOMPARE(namesOf(QWAUManager()), QStringList{"Delay"});

    machine.setFull(false);
    machine.system.processes.handler = accept;
    QWAUManager later;
    later.validate();
    QCOMPARE(titlesOf(*submenuOf(*later.effectsMenuWithTargetAction(this, "insertPlugin:"), "Acme")),
             (QStringList{"Delay", "Reverb", "Zoom"}));
}

void tst_PluginTrialTrouble::bundleInWorkIsDroppedToo()
{
    Machine machine;
    machine.system.processes.handler = [&](const ChildProcessRequest &) {
        machine.setFull(true);
        return ChildProcessResult{};
    };
    QWVSTManager manager;
    manager.validate();
    QCOMPARE(machine.system.alerts.shown, QStringList{trouble});
    QCOMPARE(machine.system.processes.runs.size(), std::size_t(1));
    QVERIFY(manager.database().empty() && QWVSTManager().database().empty());
}

void tst_PluginTrialTrouble::nothingIsAskedOfThePlaceWithoutATrial()
{
    Machine machine;
    QWAUManager().validate();
    machine.setFull(true);
    QWAUManager().validate(); // nothing is new
    machine.system.keyboard.map[0] = 0x02;
    QWVSTManager bundles; // skips
    bundles.validate();
    QCOMPARE(bundles.database().size(), std::size_t(2));
    QVERIFY(machine.system.alerts.shown.isEmpty());
}

void tst_PluginTrialTrouble::troubleIsToldAgainWhenTheSameCatalogLooksAgain()
{
    Machine machine;
    machine.setFull(true);
    QWAUManager units;
    QWVSTManager bundles;
    for (int looks = 1; looks <= 3; ++looks) {
        units.validate();
        bundles.validate();
        QCOMPARE(machine.system.alerts.shown, QStringList(looks, trouble));
    }
}

void tst_PluginTrialTrouble::trialHoldsTheLockUntilItsResultIsTaken()
{
    Machine machine;
    QList<bool> locked;
    machine.system.processes.handler = [&](const ChildProcessRequest &) {
        locked += machine.isLocked();
        return ChildProcessResult{};
    };
    machine.system.alerts.whileShown = [&] { locked += machine.isLocked(); }; // an alert may stand for hours
    QWAUManager().validate();
    QWVSTManager().validate();
    QCOMPARE(locked, (QList<bool>{true, false, true, false, true, false, true, false}));
}

void tst_PluginTrialTrouble::otherProgramThatDoesNotEndCondemnsNothing()
{
    Machine machine;
    machine.system.writeFile(supportFolder + "/validation.lock", "");
    const int other =
        ::open(QFile::encodeName(machine.system.real(supportFolder + "/validation.lock")).constData(), O_RDWR);
    QCOMPARE(::flock(other, LOCK_EX), 0);
    QWAUManager manager;
    manager.validate();
    QCOMPARE(machine.system.alerts.shown, QStringList{trouble});
    QCOMPARE(machine.system.alerts.alerts.front().informativeText,
             "Another program is trying plug-ins and does not come to an end.");
    QVERIFY(machine.system.processes.runs.empty() && manager.database().empty());
    ::close(other);
    manager.validate();
    QCOMPARE(namesOf(manager), (QStringList{"Delay", "Reverb"}));
}

void tst_PluginTrialTrouble::whatIsSaidGoesToTheLog()
{
    Machine machine;
    const auto accept = machine.system.processes.handler;
    machine.system.processes.handler = [&](const ChildProcessRequest &request) {
        ChildProcessResult result{.started = true, .exited = true, .status = 1, .output = "It rains.\nIt pours.\n"};
        return machine.system.processes.runs.size() == 1 ? (accept(request), result) : result;
    };
    QWAUManager().validate();
    QVERIFY2(logged().contains("info [Plug-ins] 'Delay' passed its trial, and said: It rains.\n    It pours.\n"),
             logged().constData());
    QVERIFY2(logged().contains("notice [Plug-ins] 'Reverb' failed its trial: It rains.\n    It pours.\n"),
             logged().constData());
    const ChildProcessRequest &run = machine.system.processes.runs.front();
    QVERIFY(run.captureErrors && run.longestOutput <= 65536);
}

void tst_PluginTrialTrouble::whatIsLoggedDoesNothingToATerminal()
{
    Machine machine;
    machine.system.processes.handler = [&](const ChildProcessRequest &) {
        return ChildProcessResult{
            .started = true, .exited = true, .status = 1, .output = QByteArray("a\tb\x1b[2J\0c\r\xff%@", 13)};
    };
    QWAUManager().validate();
    QVERIFY2(logged().contains(": a\tb\uFFFD[2J\uFFFDc\uFFFD\uFFFD%@\n"), logged().constData());
}

void tst_PluginTrialTrouble::silentFailureIsLoggedToo()
{
    Machine machine;
    machine.system.processes.handler = [&](const ChildProcessRequest &) {
        return machine.system.processes.runs.size() == 1
                   ? ChildProcessResult{}
                   : ChildProcessResult{.started = true, .exited = false, .status = 9, .output = {}};
    };
    QWVSTManager().validate();
    QVERIFY(logged().contains("'Chorus' failed its trial: the validator cannot be started\n") ||
            logged().contains("'Echo' failed its trial: the validator cannot be started\n"));
    QVERIFY2(logged().contains("the validator crashed: Killed\n"), logged().constData());
}

void tst_PluginTrialTrouble::textsAreLocalized()
{
    Machine machine;
    machine.system.addHostResource("Localizable.strings",
                                   "\"New plug-ins cannot be tried.\" = \"Geht nicht\";"
                                   "\"The folder '%@' takes no files: %@. New plug-ins are left out, and "
                                   "tried once it does.\" = \"%@ ist voll: %@\";");
    machine.setFull(true);
    QWAUManager().validate();
    QCOMPARE(machine.system.alerts.shown, QStringList{"Geht nicht"});
    QCOMPARE(machine.system.alerts.alerts.front().informativeText,
             QString(machine.system.real(supportFolder) + " ist voll: Permission denied"));
}

QW_TEST_MAIN(tst_PluginTrialTrouble)
#include "tst_PluginTrialTrouble.moc"

#include "CatalogTestSupport.h"
#include "MenuTestSupport.h"
#include "PluginTestSupport.h"
#include "fakes/QWTestMain.h"

#include <QWPlatform/foundation/PropertyList.h>
#include <QWUtilities/plugins/QWAUManager.h>

#include <QFile>

using platform::ChildProcessRequest;
using platform::ChildProcessResult;
using platform::SystemScope;

class tst_QWAUManager : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void missingDatabaseIsAnEmptyCatalog();
    void catalogIsSavedAsItWasRead();
    void newUnitsAreTriedOnceInOrderOfTheirTypes();
    void validatorIsFoundInTheFrameworkAndGetsSignedCodes();
    void recordIsSavedBeforeItIsTriedAndAgainAfterwards();
    void handOffIsAppliedAndDeleted();
    void handOffMayIgnoreTheUnit();
    void handOffMayNameAnotherUnit();
    void hostMayGiveARecordAnotherUnit();
    void staleHandOffIsTakenForTheNextUnit();
    void unitThatFailsIsTriedOnceAndLeftOutOfMenus_data();
    void unitThatFailsIsTriedOnceAndLeftOutOfMenus();
    void unitWithoutNameIsToldAtEveryScanAndNotRecorded();
    void removedUnitIsForgottenAndTriedAgainWhenItComesBack();
    void unchangedMachineWritesNothing();
    void changedDatabaseBehindTheBackIsRewritten();
    void textsAreLocalized();
};

void tst_QWAUManager::missingDatabaseIsAnEmptyCatalog()
{
    FakeSystem system;
    SystemScope current(system);
    QVERIFY(QWAUManager().database().empty());
    QVERIFY(system.alerts.shown.isEmpty());
}

void tst_QWAUManager::catalogIsSavedAsItWasRead()
{
    FakeSystem system;
    SystemScope current(system);
    QVariantList states;
    for (const char *name : {"Zeta", "Alpha", "Beta & <Co>"}) {
        const auto component = system.components.add("aufx", "Aaaa", "Acme", QString("Acme: ") + name);
        const platform::AudioComponent own{component.type, component.subtype + quint32(states.size()),
                                           component.manufacturer, 0, 0};
        system.components.entries.back().component = own;
        states.append(QVariantMap{{"componentDescription", QWComponentDescription(own).state()},
                                  {"ignore", states.size() == 1},
                                  {"name", name},
                                  {"identifier", ""}});
    }
    const QVariantMap gone{{"componentDescription", QWComponentDescription(1, 2, 3).state()}, {"ignore", false}};
    system.writePropertyList(auDatabase, QVariantList{states[0], states[1], gone, states[2]});
    QWAUManager manager;
    QCOMPARE(manager.database().size(), std::size_t(4));
    manager.validate(); // drops the one that is gone, and so saves
    QCOMPARE(system.readPropertyList(auDatabase), QVariant(states));
    QVERIFY(system.processes.runs.empty());
}

void tst_QWAUManager::newUnitsAreTriedOnceInOrderOfTheirTypes()
{
    FakeSystem system;
    SystemScope current(system);
    system.components.add("augn", "Nois", "Acme", "Acme: Generator");
    system.components.add("aumu", "Synh", "Acme", "Acme: Instrument");
    system.components.add("auou", "Outp", "Acme", "Acme: Output");
    system.components.add("aumf", "Arpg", "Acme", "Acme: Music Effect");
    system.components.add("aufx", "Dlay", "Acme", "Acme: Effect");
    system.components.add("aufx", "Revb", "Acme", "Acme: Effect 2");
    system.processes.handler = acceptingValidator(system, auHandOff);
    QWAUManager manager;
    manager.validate();
    manager.validate();
    QCOMPARE(namesOf(manager), (QStringList{"Effect", "Effect 2", "Music Effect", "Instrument", "Generator"}));
    QCOMPARE(system.processes.runs.size(), std::size_t(5));
    QWAUManager second;
    second.validate();
    QCOMPARE(system.processes.runs.size(), std::size_t(5));
}

void tst_QWAUManager::validatorIsFoundInTheFrameworkAndGetsSignedCodes()
{
    FakeSystem system;
    SystemScope current(system);
    system.components.add(platform::AudioComponent{platform::fourCharCode("aufx"), 0xA9616263, 0xFFFFFFFF, 0, 0},
                          "Acme: Delay");
    system.processes.handler = acceptingValidator(system, auHandOff);
    QWAUManager().validate();
    QCOMPARE(system.processes.runs.size(), std::size_t(1));
    const ChildProcessRequest &run = system.processes.runs.front();
    QVERIFY2(run.launchPath.endsWith("/QWUtilities.framework/Versions/A/AU Validator.app/Contents/MacOS/AU Validator"),
             qPrintable(run.launchPath));
    QCOMPARE(run.arguments, (QStringList{"1635083896", "-1453235613", "-1"}));
    QVERIFY(!run.captureOutput);
}

void tst_QWAUManager::recordIsSavedBeforeItIsTriedAndAgainAfterwards()
{
    FakeSystem system;
    SystemScope current(system);
    system.components.add("aufx", "Dlay", "Acme", "Acme: Delay");
    QVariantList saved;
    system.processes.handler = [&](const ChildProcessRequest &) {
        saved = system.readPropertyList(auDatabase).toList();
        system.writePropertyList(auHandOff, QVariantMap{{"name", "Better Name"}});
        return ChildProcessResult{};
    };
    QWAUManager().validate();
    QCOMPARE(saved.size(), 1);
    QCOMPARE(saved[0].toMap().value("name"), QVariant("Delay"));
    QCOMPARE(saved[0].toMap().value("ignore"), QVariant(false));
    QCOMPARE(system.readPropertyList(auDatabase).toList().front().toMap().value("name"), QVariant("Better Name"));
}

void tst_QWAUManager::handOffIsAppliedAndDeleted()
{
    FakeSystem system;
    SystemScope current(system);
    system.components.add("aufx", "Dlay", "Acme", "Acme: Delay");
    system.processes.handler =
        acceptingValidator(system, auHandOff, {{"manufacturer", "Acme Ltd."}, {"identifier", "com.acme"}});
    QWAUManager manager;
    manager.validate();
    QCOMPARE(manager.database().front()->name(), "Delay");
    QCOMPARE(manager.database().front()->manufacturer(), "Acme Ltd.");
    QCOMPARE(manager.database().front()->identifier(), "com.acme");
    QVERIFY(!system.readFile(auHandOff));
    QVERIFY(system.alerts.shown.isEmpty());
}

void tst_QWAUManager::handOffMayIgnoreTheUnit()
{
    FakeSystem system;
    SystemScope current(system);
    system.components.add("aufx", "Dlay", "Acme", "Acme: Delay");
    system.processes.handler = acceptingValidator(system, auHandOff, {{"ignore", true}});
    QWAUManager manager;
    manager.validate();
    QVERIFY(manager.database().front()->ignore());
    QVERIFY(system.alerts.shown.isEmpty());
}

void tst_QWAUManager::handOffMayNameAnotherUnit()
{
    FakeSystem system;
    SystemScope current(system);
    system.components.add("aufx", "Dlay", "Acme", "Acme: Delay");
    system.processes.handler =
        acceptingValidator(system, auHandOff, {{"componentDescription", QWComponentDescription(1, 2, 3).state()}});
    QWAUManager manager;
    manager.validate();
    manager.validate(); // the record is not that of an installed unit, and the unit has none
    QCOMPARE(system.processes.runs.size(), std::size_t(2));
    QCOMPARE(manager.database().size(), std::size_t(1));
}

void tst_QWAUManager::hostMayGiveARecordAnotherUnit()
{
    FakeSystem system;
    SystemScope current(system);
    system.components.add("aufx", "Dlay", "Acme", "Acme: Delay");
    system.processes.handler = acceptingValidator(system, auHandOff);
    QWAUManager manager;
    manager.validate();
    const auto other = system.components.add("aufx", "Revb", "Acme", "Acme: Reverb");
    manager.database().front()->setComponentDescription(QWComponentDescription(other));
    manager.validate(); // the first unit has no record now, and the other one has
    QCOMPARE(system.processes.runs.size(), std::size_t(2));
    QCOMPARE(system.processes.runs.back().arguments, system.processes.runs.front().arguments);
    QCOMPARE(manager.database().size(), std::size_t(2));
}

void tst_QWAUManager::staleHandOffIsTakenForTheNextUnit()
{
    FakeSystem system;
    SystemScope current(system);
    system.components.add("aufx", "Dlay", "Acme", "Acme: Delay");
    system.writePropertyList(auHandOff, QVariantMap{{"name", "Stale"}});
    QWAUManager manager; // the validator does nothing
    manager.validate();
    QCOMPARE(namesOf(manager), QStringList{"Stale"});
}

void tst_QWAUManager::unitThatFailsIsTriedOnceAndLeftOutOfMenus_data()
{
    QTest::addColumn<bool>("started");
    QTest::addColumn<bool>("exited");
    QTest::addColumn<int>("status");
    QTest::newRow("missing validator") << false << false << -1;
    QTest::newRow("crash") << true << false << 11;
    QTest::newRow("exit without writing") << true << true << 0;
    QTest::newRow("refusal") << true << true << 1;
}

void tst_QWAUManager::unitThatFailsIsTriedOnceAndLeftOutOfMenus()
{
    QFETCH(bool, started);
    QFETCH(bool, exited);
    QFETCH(int, status);
    FakeSystem system;
    SystemScope current(system);
    system.components.add("aufx", "Dlay", "Acme", "Acme: Delay");
    system.processes.handler = [&](const ChildProcessRequest &) {
        return ChildProcessResult{.started = started, .exited = exited, .status = status, .output = {}};
    };
    QWAUManager manager;
    manager.validate();
    manager.validate();
    QCOMPARE(system.processes.runs.size(), std::size_t(1));
    QCOMPARE(system.alerts.shown, QStringList{"The 'Delay' Audio Unit failed to validate and will be ignored."});
    QCOMPARE(system.alerts.alerts.front().informativeText, "");
    QVERIFY(system.alerts.alerts.front().buttons.size() <= 1);
    QVERIFY(manager.database().front()->ignore());
    QVERIFY(manager.effectsMenuWithTargetAction(this, "insertPlugin:")->isEmpty());
    QVERIFY(QWAUManager().database().front()->ignore());
}

void tst_QWAUManager::unitWithoutNameIsToldAtEveryScanAndNotRecorded()
{
    FakeSystem system;
    SystemScope current(system);
    system.components.add("aufx", "Dlay", "Acme", "");
    system.components.add("aufx", "Revb", "Acme", ": Reverb");
    system.components.add("aufx", "Good", "Acme", "Acme: Good");
    system.processes.handler = acceptingValidator(system, auHandOff);
    QWAUManager manager;
    manager.validate();
    manager.validate();
    QCOMPARE(system.alerts.shown, QStringList(4, "An Audio Unit failed to validate because it could not be opened."));
    QCOMPARE(system.alerts.alerts.front().informativeText, "This is usually as a result of incorrect permissions. Try "
                                                           "to repair permissions using Disk Utility and try again.");
    QCOMPARE(namesOf(manager), QStringList{"Good"});
    QCOMPARE(system.readPropertyList(auDatabase).toList().size(), 1);
}

void tst_QWAUManager::removedUnitIsForgottenAndTriedAgainWhenItComesBack()
{
    FakeSystem system;
    SystemScope current(system);
    const auto delay = system.components.add("aufx", "Dlay", "Acme", "Acme: Delay");
    system.components.add("aufx", "Revb", "Acme", "Acme: Reverb");
    system.processes.handler = acceptingValidator(system, auHandOff);
    QWAUManager manager;
    manager.validate();
    system.components.remove(delay);
    manager.validate();
    QCOMPARE(namesOf(manager), QStringList{"Reverb"});
    QCOMPARE(namesOf(QWAUManager()), QStringList{"Reverb"});
    system.components.add(delay, "Acme: Delay");
    manager.validate();
    QCOMPARE(namesOf(manager), (QStringList{"Reverb", "Delay"}));
    QCOMPARE(system.processes.runs.size(), std::size_t(3));
}

void tst_QWAUManager::unchangedMachineWritesNothing()
{
    FakeSystem system;
    SystemScope current(system);
    system.components.add("aufx", "Dlay", "Acme", "Acme: Delay");
    system.processes.handler = acceptingValidator(system, auHandOff);
    QWAUManager().validate();
    system.writeFile(auDatabase, *system.readFile(auDatabase) + " "); // would be gone after a save
    QWAUManager manager;
    manager.validate();
    QVERIFY(system.readFile(auDatabase)->endsWith(' '));
    QCOMPARE(system.processes.runs.size(), std::size_t(1));
}

void tst_QWAUManager::changedDatabaseBehindTheBackIsRewritten()
{
    FakeSystem system;
    SystemScope current(system);
    system.components.add("aufx", "Dlay", "Acme", "Acme: Delay");
    system.components.add("aufx", "Revb", "Acme", "Acme: Reverb");
    int runs = 0;
    system.processes.handler = [&](const ChildProcessRequest &) {
        if (runs++)
            QFile::remove(system.real(auDatabase));
        system.writePropertyList(auHandOff, QVariantMap{});
        return ChildProcessResult{};
    };
    QWAUManager manager;
    manager.validate();
    const QVariantList states = statesOf(manager);
    QCOMPARE(states.size(), 2);
    QCOMPARE(*system.readFile(auDatabase), platform::PropertyList::toXml(states));
}

void tst_QWAUManager::textsAreLocalized()
{
    FakeSystem system;
    SystemScope current(system);
    system.addHostResource(
        "Localizable.strings",
        "\"The '%@' Audio Unit failed to validate and will be ignored.\" = \"%@ fehlt\";"
        "\"The '%@' Audio Unit has been known to cause problems with Quorwell Engineering products.\" = \"%@ stört\";"
        "\"Would you like to ignore this Audio Unit or would you like to continue to validate it and use it?\" = "
        "\"Und?\";"
        "\"Ignore\" = \"Weglassen\"; \"Use\" = \"Nehmen\";"
        "\"An Audio Unit failed to validate because it could not be opened.\" = \"Zu\";"
        "\"This is usually as a result of incorrect permissions. Try to repair permissions using Disk Utility and try "
        "again.\" = \"Rechte?\";");
    system.components.add("aufx", "Dlay", "Acme", "Acme: 100%@ %d Delay");
    system.components.add("aufx", "wbDl", "Glmf", "Glimmerfrog: Own Name"); // on the framework's own graylist
    system.components.add("aufx", "Nona", "Acme", "");
    QWAUManager().validate();
    QCOMPARE(system.alerts.shown, (QStringList{"100%@ %d Delay fehlt", "Wobbledelay stört", "Zu"}));
    QCOMPARE(system.alerts.alerts[1].informativeText, "Und?");
    QCOMPARE(system.alerts.alerts[1].buttons, (QStringList{"Weglassen", "Nehmen"}));
    QCOMPARE(system.alerts.alerts[2].informativeText, "Rechte?");
}

QW_TEST_MAIN(tst_QWAUManager)
#include "tst_QWAUManager.moc"

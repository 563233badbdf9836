#include "PluginTestSupport.h"
#include "ResourceFileBytes.h"
#include "fakes/QWTestMain.h"

#include <QWPlatform/foundation/Bundle.h>
#include <QWPlatform/foundation/PropertyList.h>
#include <QWUtilities/plugins/QWAUManager.h>

#include <QDir>
#include <QFile>

using platform::ChildProcessRequest;
using platform::ChildProcessResult;
using platform::System;

namespace
{
/// A host's own catalog: its graylist lies in the bundle of this program.
class HostsManager : public QWAUManager
{
};

QString ownGraylist()
{
    return platform::Bundle::forExecutable().path() + "/Contents/Resources/graylist_au.plist";
}

void writeOwnGraylist(const QByteArray &bytes)
{
    QDir().mkpath(QFileInfo(ownGraylist()).path());
    QFile file(ownGraylist());
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) || file.write(bytes) != bytes.size())
        qFatal("No graylist can be written");
}

QVariantMap graylistEntry(const char (&subtype)[5], const char (&manufacturer)[5], const QString &name)
{
    return {{"subtype", qlonglong(platform::fourCharCode(subtype))},
            {"manufacturer", qlonglong(platform::fourCharCode(manufacturer))},
            {"name", name}};
}

QStringList namesOf(const QWAUManager &manager)
{
    QStringList names;
    for (const auto &record : manager.database())
        names.append(record->name());
    return names;
}
} // namespace

class tst_QWAUManager : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup();
    void missingDatabaseIsAnEmptyCatalog();
    void unreadableDatabaseIsAnEmptyCatalog_data();
    void unreadableDatabaseIsAnEmptyCatalog();
    void catalogIsSavedAsItWasRead();
    void newUnitsAreTriedOnceInOrderOfTheirTypes();
    void validatorIsFoundInTheFrameworkAndGetsSignedCodes();
    void recordIsSavedBeforeItIsTriedAndAgainAfterwards();
    void handOffIsAppliedAndDeleted();
    void handOffThatIsNoDictionaryCountsAsSuccess_data();
    void handOffThatIsNoDictionaryCountsAsSuccess();
    void handOffMayIgnoreTheUnit();
    void handOffMayNameAnotherUnit();
    void staleHandOffIsTakenForTheNextUnit();
    void unitThatFailsIsTriedOnceAndLeftOutOfMenus_data();
    void unitThatFailsIsTriedOnceAndLeftOutOfMenus();
    void unitWithoutNameIsToldAtEveryScanAndNotRecorded();
    void removedUnitIsForgottenAndTriedAgainWhenItComesBack();
    void unchangedMachineWritesNothing();
    void changedDatabaseBehindTheBackIsRewritten();
    void identifierComesFromTheResourceFile();
    void identifierOfTheUsersFolderWins();
    void identifierFallsBack_data();
    void identifierFallsBack();
    void bundlesThatTellNothingAreSkipped_data();
    void bundlesThatTellNothingAreSkipped();
    void componentFolderWithoutPermissionAddsNothing();
    void shippedGraylistWarns();
    void graylistedUnitCanBeIgnored();
    void graylistedUnitCanBeUsed();
    void graylistComparesSubtypeAndManufacturerOnly();
    void graylistNumbersMayBeReal();
    void firstGraylistEntryWins();
    void oddGraylistsAreHarmless_data();
    void oddGraylistsAreHarmless();
    void skipKeyStopsValidationForGood();
    void otherKeysDoNotSkip_data();
    void otherKeysDoNotSkip();
    void skipKeyIsSampledOncePerNewUnit();
    void exceptionsAreNotReportedDuringTheScan();
    void scanGoesOnAfterOneThatAnExceptionEnded();
    void menusGroupByManufacturerInTitleOrder();
    void menusLeaveOutIgnoredAndPlayers();
    void emptyCatalogGivesEmptyMenus();
    void itemsCarryTheirComponentAndSendTheAction();
    void textsAreLocalized();
    void oddNamesGoAllTheWay();
};

void tst_QWAUManager::cleanup()
{
    QFile::remove(ownGraylist());
}

void tst_QWAUManager::missingDatabaseIsAnEmptyCatalog()
{
    FakeSystem system;
    System::Scope current(system);
    QVERIFY(QWAUManager().database().empty());
    QVERIFY(system.alerts.shown.isEmpty());
}

void tst_QWAUManager::unreadableDatabaseIsAnEmptyCatalog_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("garbage") << QByteArray("\x00\xff garbage", 10);
    QTest::newRow("a dictionary") << platform::PropertyList::toXml(QVariantMap{{"a", 1LL}});
    QTest::newRow("array of texts") << platform::PropertyList::toXml(QVariantList{"a", "b"});
    QTest::newRow("cut short")
        << platform::PropertyList::toXml(QVariantList{QVariantMap{{"ignore", true}}}).chopped(20);
    QTest::newRow("binary, cut short") << QByteArray("bplist00\xd3\x01\x02");
}

void tst_QWAUManager::unreadableDatabaseIsAnEmptyCatalog()
{
    QFETCH(QByteArray, bytes);
    FakeSystem system;
    System::Scope current(system);
    system.writeFile(auDatabase, bytes);
    system.components.add("aufx", "Dlay", "Acme", "Acme: Delay");
    system.processes.handler = acceptingValidator(system, auHandOff);
    QWAUManager manager;
    QVERIFY(manager.database().empty());
    manager.validate();
    QCOMPARE(namesOf(QWAUManager()), QStringList{"Delay"});
    QVERIFY(system.alerts.shown.isEmpty());
}

void tst_QWAUManager::catalogIsSavedAsItWasRead()
{
    FakeSystem system;
    System::Scope current(system);
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
    System::Scope current(system);
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
    System::Scope current(system);
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
    System::Scope current(system);
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
    System::Scope current(system);
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

void tst_QWAUManager::handOffThatIsNoDictionaryCountsAsSuccess_data()
{
    QTest::addColumn<QByteArray>("bytes");
    const QByteArray whole = platform::PropertyList::toXml(QVariantMap{{"name", "Other"}, {"ignore", true}}).trimmed();
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("garbage") << QByteArray("\x00\xff", 2);
    QTest::newRow("an array") << platform::PropertyList::toXml(QVariantList{"name"});
    QTest::newRow("binary, cut short") << QByteArray("bplist00");
    QTest::newRow("wrongly typed") << platform::PropertyList::toXml(QVariantMap{{"name", 1LL}, {"ignore", "yes"}});
    for (qsizetype size = 0; size < whole.size(); ++size)
        QTest::addRow("%d bytes", static_cast<int>(size)) << whole.first(size);
}

void tst_QWAUManager::handOffThatIsNoDictionaryCountsAsSuccess()
{
    QFETCH(QByteArray, bytes);
    FakeSystem system;
    System::Scope current(system);
    system.components.add("aufx", "Dlay", "Acme", "Acme: Delay");
    system.processes.handler = [&](const ChildProcessRequest &) {
        system.writeFile(auHandOff, bytes);
        return ChildProcessResult{};
    };
    QWAUManager manager;
    manager.validate();
    QCOMPARE(manager.database().front()->name(), "Delay");
    QVERIFY(!manager.database().front()->ignore());
    QVERIFY(!system.readFile(auHandOff));
    QVERIFY(system.alerts.shown.isEmpty());
}

void tst_QWAUManager::handOffMayIgnoreTheUnit()
{
    FakeSystem system;
    System::Scope current(system);
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
    System::Scope current(system);
    system.components.add("aufx", "Dlay", "Acme", "Acme: Delay");
    system.processes.handler =
        acceptingValidator(system, auHandOff, {{"componentDescription", QWComponentDescription(1, 2, 3).state()}});
    QWAUManager manager;
    manager.validate();
    manager.validate(); // the record is not that of an installed unit, and the unit has none
    QCOMPARE(system.processes.runs.size(), std::size_t(2));
    QCOMPARE(manager.database().size(), std::size_t(1));
}

void tst_QWAUManager::staleHandOffIsTakenForTheNextUnit()
{
    FakeSystem system;
    System::Scope current(system);
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
    System::Scope current(system);
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
    System::Scope current(system);
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
    System::Scope current(system);
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
    System::Scope current(system);
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
    System::Scope current(system);
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
    QVariantList states;
    for (const auto &record : manager.database())
        states.append(record->state());
    QCOMPARE(states.size(), 2);
    QCOMPARE(*system.readFile(auDatabase), platform::PropertyList::toXml(states));
}

namespace
{
void addComponentBundle(const FakeSystem &system, const QString &path, const QVariantMap &info,
                        const QByteArray &resources = resourceFileBytes())
{
    if (!info.isEmpty())
        system.writePropertyList(path + "/Contents/Info.plist", info);
    system.writeFile(path + "/Contents/Resources/" + QFileInfo(path).completeBaseName() + ".rsrc", resources);
}

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

void tst_QWAUManager::identifierComesFromTheResourceFile()
{
    FakeSystem system;
    System::Scope current(system);
    addComponentBundle(system, "/Library/Audio/Plug-Ins/Components/Super.Delay.component",
                       {{"CFBundleIdentifier", "com.acme.delay"}});
    QCOMPARE(scannedIdentifier(system), "com.acme.delay");
}

void tst_QWAUManager::identifierOfTheUsersFolderWins()
{
    FakeSystem system;
    System::Scope current(system);
    // The system's bundle of the same identifier registers another unit; only the user's counts.
    QByteArray other = resourceFileBytes();
    other.replace("Dlay", "Othr");
    addComponentBundle(system, "/Library/Audio/Plug-Ins/Components/A.component",
                       {{"CFBundleIdentifier", "com.acme.delay"}}, other);
    addComponentBundle(system, "~/Library/Audio/Plug-Ins/Components/B.component",
                       {{"CFBundleIdentifier", "com.acme.delay"}});
    QCOMPARE(scannedIdentifier(system), "com.acme.delay");

    FakeSystem turned;
    System::Scope inner(turned);
    addComponentBundle(turned, "/Library/Audio/Plug-Ins/Components/A.component",
                       {{"CFBundleIdentifier", "com.acme.delay"}});
    addComponentBundle(turned, "~/Library/Audio/Plug-Ins/Components/B.component",
                       {{"CFBundleIdentifier", "com.acme.delay"}}, other);
    QCOMPARE(scannedIdentifier(turned), "none");
}

void tst_QWAUManager::identifierFallsBack_data()
{
    QTest::addColumn<QVariantMap>("info");
    QTest::addColumn<QString>("identifier");
    QTest::newRow("executable") << QVariantMap{{"CFBundleExecutable", "Delay"}, {"CFBundleName", "Name"}}
                                << "com.unknown.Delay";
    QTest::newRow("name") << QVariantMap{{"CFBundleName", "Name"}} << "com.unknown.Name";
    QTest::newRow("identifier first") << QVariantMap{{"CFBundleIdentifier", "com.a"}, {"CFBundleExecutable", "D"}}
                                      << "com.a";
}

void tst_QWAUManager::identifierFallsBack()
{
    QFETCH(QVariantMap, info);
    QFETCH(QString, identifier);
    FakeSystem system;
    System::Scope current(system);
    addComponentBundle(system, "/Library/Audio/Plug-Ins/Components/A.component", info);
    QCOMPARE(scannedIdentifier(system), identifier);
}

void tst_QWAUManager::bundlesThatTellNothingAreSkipped_data()
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

void tst_QWAUManager::bundlesThatTellNothingAreSkipped()
{
    QFETCH(QString, path);
    QFETCH(QByteArray, resources);
    FakeSystem system;
    System::Scope current(system);
    addComponentBundle(system, path, {{"CFBundleIdentifier", "com.acme.delay"}}, resources);
    QCOMPARE(scannedIdentifier(system), "none");
}

void tst_QWAUManager::componentFolderWithoutPermissionAddsNothing()
{
    FakeSystem system;
    System::Scope current(system);
    const QString folder = "/Library/Audio/Plug-Ins/Components";
    addComponentBundle(system, folder + "/A.component", {{"CFBundleIdentifier", "com.acme.delay"}});
    QVERIFY(setForbidden(system, folder, true));
    system.makeDirectory("~/Library/Application Support/Quorwell");
    const OrdinaryUser user(system);
    QVERIFY(user.isReady);
    QCOMPARE(scannedIdentifier(system), "none");
    QVERIFY(system.alerts.shown.isEmpty());
}

void tst_QWAUManager::shippedGraylistWarns()
{
    FakeSystem system;
    System::Scope current(system);
    system.components.add("aufx", "wbDl", "Glmf", "Glimmerfrog: Own Name");
    QWAUManager manager;
    manager.validate();
    QCOMPARE(system.alerts.shown,
             QStringList{
                 "The 'Wobbledelay' Audio Unit has been known to cause problems with Quorwell Engineering products."});
    QCOMPARE(system.alerts.alerts.front().informativeText,
             "Would you like to ignore this Audio Unit or would you like to continue to validate it and use it?");
    QCOMPARE(system.alerts.alerts.front().buttons, (QStringList{"Ignore", "Use"}));
    QVERIFY(system.processes.runs.empty());
}

void tst_QWAUManager::graylistedUnitCanBeIgnored()
{
    FakeSystem system;
    System::Scope current(system);
    writeOwnGraylist(platform::PropertyList::toXml(QVariantList{graylistEntry("Dlay", "Acme", "Known Delay")}));
    system.components.add("aufx", "Dlay", "Acme", "Acme: Delay");
    system.alerts.answerWith({"Ignore"});
    HostsManager manager;
    manager.validate();
    manager.validate();
    QCOMPARE(system.alerts.shown.size(), 1);
    QVERIFY(system.processes.runs.empty());
    QVERIFY(manager.database().front()->ignore());
    QVERIFY(QWAUManager().database().front()->ignore());
    QVERIFY(manager.effectsMenuWithTargetAction(this, "insertPlugin:")->isEmpty());
}

void tst_QWAUManager::graylistedUnitCanBeUsed()
{
    FakeSystem system;
    System::Scope current(system);
    writeOwnGraylist(platform::PropertyList::toXml(QVariantList{graylistEntry("Dlay", "Acme", "Known Delay")}));
    system.components.add("aufx", "Dlay", "Acme", "Acme: Delay");
    system.processes.handler = acceptingValidator(system, auHandOff);
    system.alerts.answerWith({"Use"});
    HostsManager manager;
    manager.validate();
    QCOMPARE(system.processes.runs.size(), std::size_t(1));
    QVERIFY(!manager.database().front()->ignore());
}

void tst_QWAUManager::graylistComparesSubtypeAndManufacturerOnly()
{
    FakeSystem system;
    System::Scope current(system);
    QVariantMap negative = graylistEntry("Dlay", "Acme", "High Codes");
    negative["subtype"] = -1453235613LL; // 0xA9616263, as a signed word
    negative["manufacturer"] = 0xFFFFFFFFLL;
    writeOwnGraylist(
        platform::PropertyList::toXml(QVariantList{graylistEntry("Dlay", "Acme", "Known Delay"), negative}));
    system.components.add("augn", "Dlay", "Acme", "Acme: Generator");
    system.components.add("aufx", "Dlay", "Othr", "Other: Delay");
    system.components.add("aufx", "Revb", "Acme", "Acme: Reverb");
    system.components.add(platform::AudioComponent{platform::fourCharCode("aumf"), 0xA9616263, 0xFFFFFFFF, 0, 0},
                          "A: B");
    system.processes.handler = acceptingValidator(system, auHandOff);
    HostsManager().validate();
    QCOMPARE(system.alerts.shown.size(), 2);
    QVERIFY(system.alerts.shown[0].contains("'High Codes'"));
    QVERIFY(system.alerts.shown[1].contains("'Known Delay'"));
}

void tst_QWAUManager::graylistNumbersMayBeReal()
{
    FakeSystem system;
    System::Scope current(system);
    QVariantMap fraction = graylistEntry("Dlay", "Acme", "Fraction");
    fraction["subtype"] = fraction["subtype"].toDouble() + 0.75; // its whole part counts
    QVariantMap huge = graylistEntry("Revb", "Acme", "Huge");
    huge["subtype"] = 1e300;
    writeOwnGraylist(platform::PropertyList::toXml(QVariantList{huge, fraction}));
    system.components.add("aufx", "Dlay", "Acme", "Acme: Delay");
    system.components.add("aufx", "Revb", "Acme", "Acme: Reverb");
    system.components.add({platform::fourCharCode("aufx"), 0, platform::fourCharCode("Acme"), 0, 0}, "Acme: Zero");
    system.processes.handler = acceptingValidator(system, auHandOff);
    HostsManager().validate();
    QCOMPARE(system.alerts.shown.size(), 1);
    QVERIFY(system.alerts.shown[0].contains("'Fraction'"));
}

void tst_QWAUManager::firstGraylistEntryWins()
{
    FakeSystem system;
    System::Scope current(system);
    writeOwnGraylist(platform::PropertyList::toXml(
        QVariantList{graylistEntry("Dlay", "Acme", "First"), graylistEntry("Dlay", "Acme", "Second")}));
    system.components.add("aufx", "Dlay", "Acme", "Acme: Delay");
    HostsManager().validate();
    QCOMPARE(system.alerts.shown.size(), 1);
    QVERIFY(system.alerts.shown[0].contains("'First'"));
}

void tst_QWAUManager::oddGraylistsAreHarmless_data()
{
    using platform::PropertyList::toXml;
    QTest::addColumn<QByteArray>("bytes");
    const QByteArray whole = toXml(QVariantList{graylistEntry("Dlay", "Acme", "Delay")}).trimmed();
    QTest::newRow("garbage") << QByteArray("\x00\xff", 2);
    QTest::newRow("a dictionary") << toXml(QVariantMap{{"subtype", 1LL}});
    QTest::newRow("array of texts") << toXml(QVariantList{"Dlay", 5LL});
    QTest::newRow("without numbers") << toXml(QVariantList{QVariantMap{{"name", "Delay"}}});
    QTest::newRow("numbers as text") << toXml(
        QVariantList{QVariantMap{{"name", "D"}, {"subtype", "1"}, {"manufacturer", "2"}}});
    QVariantMap nameless = graylistEntry("Dlay", "Acme", "Delay");
    nameless["name"] = 5LL;
    QTest::newRow("name as number") << toXml(QVariantList{nameless});
    for (qsizetype size = 0; size < whole.size(); size += 7)
        QTest::addRow("%d bytes", static_cast<int>(size)) << whole.first(size);
}

void tst_QWAUManager::oddGraylistsAreHarmless()
{
    QFETCH(QByteArray, bytes);
    FakeSystem system;
    System::Scope current(system);
    writeOwnGraylist(bytes);
    system.components.add("aufx", "Dlay", "Acme", "Acme: Delay");
    system.processes.handler = acceptingValidator(system, auHandOff);
    HostsManager().validate();
    QVERIFY(system.alerts.shown.isEmpty());
    QCOMPARE(system.processes.runs.size(), std::size_t(1));
}

void tst_QWAUManager::skipKeyStopsValidationForGood()
{
    FakeSystem system;
    System::Scope current(system);
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

void tst_QWAUManager::otherKeysDoNotSkip_data()
{
    QTest::addColumn<int>("byte");
    for (const int byte : {0x00, 0x01, 0x03, 0x04, 0x82, 0xFF})
        QTest::addRow("0x%02x", byte) << byte;
}

void tst_QWAUManager::otherKeysDoNotSkip()
{
    QFETCH(int, byte);
    FakeSystem system;
    System::Scope current(system);
    system.keyboard.map[0] = static_cast<quint8>(byte);
    system.keyboard.map[1] = 0x02;
    system.components.add("aufx", "Aaaa", "Acme", "Acme: A");
    system.processes.handler = acceptingValidator(system, auHandOff);
    QWAUManager().validate();
    QCOMPARE(system.processes.runs.size(), std::size_t(1));
}

void tst_QWAUManager::skipKeyIsSampledOncePerNewUnit()
{
    FakeSystem system;
    System::Scope current(system);
    writeOwnGraylist(platform::PropertyList::toXml(QVariantList{graylistEntry("Aaaa", "Acme", "A")}));
    system.components.add("aufx", "Aaaa", "Acme", "Acme: A"); // ignored, and sampled all the same
    system.components.add("aufx", "Bbbb", "Acme", "Acme: B");
    system.components.add("aufx", "Nona", "Acme", ""); // gets no record
    system.processes.handler = acceptingValidator(system, auHandOff);
    HostsManager manager;
    manager.validate();
    QCOMPARE(system.keyboard.asked, 2);
    manager.validate();
    QCOMPARE(system.keyboard.asked, 2);
}

void tst_QWAUManager::exceptionsAreNotReportedDuringTheScan()
{
    FakeSystem system;
    System::Scope current(system);
    auto *application = QWApplication::sharedApplication();
    application->setHandleExceptions(true);
    system.components.add("aufx", "Aaaa", "Acme", "Acme: A");
    bool handledDuringScan = true;
    system.processes.handler = [&](const ChildProcessRequest &) {
        handledDuringScan = application->handlesExceptions();
        return ChildProcessResult{};
    };
    QWAUManager().validate();
    QVERIFY(!handledDuringScan);
    QVERIFY(application->handlesExceptions());
}

void tst_QWAUManager::scanGoesOnAfterOneThatAnExceptionEnded()
{
    FakeSystem system;
    System::Scope current(system);
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

void tst_QWAUManager::menusGroupByManufacturerInTitleOrder()
{
    FakeSystem system;
    System::Scope current(system);
    system.components.add("aufx", "Zeta", "Beta", "Beta: Zeta");
    system.components.add("aumf", "Gamm", "Acme", "Acme: gamma");
    system.components.add("aufx", "Alph", "Beta", "Beta: Alpha");
    system.components.add("augn", "Delt", "Acme", "Acme: Delta");
    system.components.add("aumu", "Synh", "Acme", "Acme: Synth");
    system.processes.handler = acceptingValidator(system, auHandOff);
    QWAUManager manager;
    manager.validate();
    const auto effects = manager.effectsMenuWithTargetAction(this, "insertPlugin:");
    QCOMPARE(titlesOf(*effects), (QStringList{"Acme", "Beta"}));
    QCOMPARE(titlesOf(*submenuOf(*effects, "Acme")), (QStringList{"Delta", "gamma"}));
    QCOMPARE(titlesOf(*submenuOf(*effects, "Beta")), (QStringList{"Alpha", "Zeta"}));
    const auto instruments = manager.instrumentsMenuWithTargetAction(this, "insertPlugin:");
    QCOMPARE(titlesOf(*instruments), QStringList{"Acme"});
    QCOMPARE(titlesOf(*submenuOf(*instruments, "Acme")), QStringList{"Synth"});
}

void tst_QWAUManager::menusLeaveOutIgnoredAndPlayers()
{
    FakeSystem system;
    System::Scope current(system);
    QVariantList states;
    const auto add = [&](const char(&type)[5], const char(&subtype)[5], const char(&maker)[5], bool ignore) {
        using platform::fourCharCode;
        const QWComponentDescription unit(fourCharCode(type), fourCharCode(subtype), fourCharCode(maker));
        states.append(QVariantMap{
            {"componentDescription", unit.state()}, {"ignore", ignore}, {"name", subtype}, {"manufacturer", maker}});
    };
    add("augn", "afpl", "appl", false);
    add("augn", "sspl", "appl", false);
    add("augn", "nois", "appl", false);
    add("aufx", "Dlay", "Acme", true);
    add("aumu", "Synh", "Acme", true);
    system.writePropertyList(auDatabase, states);
    QWAUManager manager;
    const auto effects = manager.effectsMenuWithTargetAction(this, "insertPlugin:");
    QCOMPARE(titlesOf(*effects), QStringList{"appl"});
    QCOMPARE(titlesOf(*submenuOf(*effects, "appl")), QStringList{"nois"});
    QVERIFY(manager.instrumentsMenuWithTargetAction(this, "insertPlugin:")->isEmpty());
}

void tst_QWAUManager::emptyCatalogGivesEmptyMenus()
{
    FakeSystem system;
    System::Scope current(system);
    QWAUManager manager;
    QVERIFY(manager.effectsMenuWithTargetAction(this, "insertPlugin:")->isEmpty());
    QVERIFY(manager.instrumentsMenuWithTargetAction(this, "insertPlugin:")->isEmpty());
}

void tst_QWAUManager::itemsCarryTheirComponentAndSendTheAction()
{
    FakeSystem system;
    System::Scope current(system);
    const auto component = system.components.add("aufx", "Dlay", "Acme", "Acme: Delay");
    system.processes.handler = acceptingValidator(system, auHandOff);
    QWAUManager manager;
    manager.validate();
    Receiver receiver;
    const auto menu = manager.effectsMenuWithTargetAction(&receiver, "insertPlugin:");
    auto *item = itemOf(*submenuOf(*menu, "Acme"), "Delay");
    QVERIFY(item);
    QCOMPARE(item->target(), &receiver);
    QCOMPARE(item->action(), platform::Selector("insertPlugin:"));
    item->trigger();
    QCOMPARE(receiver.chosen.size(), 1);
    QCOMPARE(receiver.chosen.front().value<QWComponentDescription>(), QWComponentDescription(component));
}

void tst_QWAUManager::textsAreLocalized()
{
    FakeSystem system;
    System::Scope current(system);
    system.addHostResource("Localizable.strings",
                           "\"The '%@' Audio Unit failed to validate and will be ignored.\" = \"%@ fehlt\";");
    system.components.add("aufx", "Dlay", "Acme", "Acme: 100%@ %d Delay");
    QWAUManager().validate();
    QCOMPARE(system.alerts.shown, QStringList{"100%@ %d Delay fehlt"});
}

void tst_QWAUManager::oddNamesGoAllTheWay()
{
    FakeSystem system;
    System::Scope current(system);
    const QStringList names{"A & B", "שלום", "🎛 Delay", QString(1000, 'x'), "tab\there", "<i>\"q\"</i>", "&amp;"};
    quint32 code = platform::fourCharCode("Aaaa");
    for (const QString &name : names)
        system.components.add({platform::fourCharCode("aufx"), code++, platform::fourCharCode("Acme"), 0, 0},
                              "Acme: " + name);
    system.processes.handler = acceptingValidator(system, auHandOff);
    QWAUManager().validate();
    QWAUManager manager;
    QCOMPARE(namesOf(manager), names);
    QStringList titles = titlesOf(*submenuOf(*manager.effectsMenuWithTargetAction(this, "insertPlugin:"), "Acme"));
    QCOMPARE(QSet<QString>(titles.begin(), titles.end()), QSet<QString>(names.begin(), names.end()));
}

QW_TEST_MAIN(tst_QWAUManager)
#include "tst_QWAUManager.moc"

#include "CatalogTestSupport.h"
#include "MenuTestSupport.h"
#include "OrdinaryUser.h"
#include "PluginTestSupport.h"
#include "fakes/QWTestMain.h"

#include <QWPlatform/foundation/PropertyList.h>
#include <QWUtilities/plugins/QWAUManager.h>
#include <QWUtilities/plugins/QWVSTManager.h>

#include <QFileInfo>

using platform::ChildProcessRequest;
using platform::ChildProcessResult;
using platform::SystemScope;

/// Files and names that nobody would write on purpose, and files that cannot be read.
class tst_PluginBadInput : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void unreadableUnitDatabaseIsAnEmptyCatalog_data();
    void unreadableUnitDatabaseIsAnEmptyCatalog();
    void unitHandOffThatIsNoDictionaryCountsAsSuccess_data();
    void unitHandOffThatIsNoDictionaryCountsAsSuccess();
    void handOffWithoutPermissionCountsAsSuccessAndIsDeleted();
    void oddUnitNamesGoAllTheWay();
    void unreadableBundleDatabaseIsAnEmptyCatalog_data();
    void unreadableBundleDatabaseIsAnEmptyCatalog();
    void recordsWithOddValuesAreKept();
    void databaseWithoutPermissionIsAnEmptyCatalogAndStays();
    void bundleHandOffThatIsNoDictionaryCountsAsSuccess_data();
    void bundleHandOffThatIsNoDictionaryCountsAsSuccess();
    void oddBundleNamesGoAllTheWay();
};

void tst_PluginBadInput::unreadableUnitDatabaseIsAnEmptyCatalog_data()
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

void tst_PluginBadInput::unreadableUnitDatabaseIsAnEmptyCatalog()
{
    QFETCH(QByteArray, bytes);
    FakeSystem system;
    SystemScope current(system);
    system.writeFile(auDatabase, bytes);
    system.components.add("aufx", "Dlay", "Acme", "Acme: Delay");
    system.processes.handler = acceptingValidator(system, auHandOff);
    QWAUManager manager;
    QVERIFY(manager.database().empty());
    manager.validate();
    QCOMPARE(namesOf(QWAUManager()), QStringList{"Delay"});
    QVERIFY(system.alerts.shown.isEmpty());
}

void tst_PluginBadInput::unitHandOffThatIsNoDictionaryCountsAsSuccess_data()
{
    QTest::addColumn<QByteArray>("bytes");
    const QByteArray whole = platform::PropertyList::toXml(QVariantMap{{"name", "Other"}, {"ignore", true}}).trimmed();
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("garbage") << QByteArray("\x00\xff", 2);
    QTest::newRow("an array") << platform::PropertyList::toXml(QVariantList{"name"});
    QTest::newRow("binary, cut short") << QByteArray("bplist00");
    QTest::newRow("wrongly typed") << platform::PropertyList::toXml(QVariantMap{{"name", 1LL}, {"ignore", "yes"}});
    addRowsCutShort(whole);
}

void tst_PluginBadInput::unitHandOffThatIsNoDictionaryCountsAsSuccess()
{
    QFETCH(QByteArray, bytes);
    FakeSystem system;
    SystemScope current(system);
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

void tst_PluginBadInput::handOffWithoutPermissionCountsAsSuccessAndIsDeleted()
{
    FakeSystem system;
    SystemScope current(system);
    system.components.add("aufx", "Dlay", "Acme", "Acme: Delay");
    system.writePropertyList(auHandOff, QVariantMap{{"ignore", true}});
    QVERIFY(setForbidden(system, auHandOff, true));
    const OrdinaryUser user;
    QVERIFY(user.isReady);
    QWAUManager manager; // its validator does nothing
    manager.validate();
    QVERIFY(!manager.database().front()->ignore());
    QVERIFY(!QFileInfo::exists(system.real(auHandOff)));
    QVERIFY(system.alerts.shown.isEmpty());
}

void tst_PluginBadInput::oddUnitNamesGoAllTheWay()
{
    FakeSystem system;
    SystemScope current(system);
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

void tst_PluginBadInput::unreadableBundleDatabaseIsAnEmptyCatalog_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("garbage") << QByteArray("\x00\xff", 2);
    QTest::newRow("a dictionary") << platform::PropertyList::toXml(QVariantMap{{"path", "/x.vst"}});
    QTest::newRow("cut short")
        << platform::PropertyList::toXml(QVariantList{QVariantMap{{"path", "/x.vst"}}}).chopped(12);
}

void tst_PluginBadInput::unreadableBundleDatabaseIsAnEmptyCatalog()
{
    QFETCH(QByteArray, bytes);
    FakeSystem system;
    SystemScope current(system);
    system.writeFile(vstDatabase, bytes);
    system.addVSTBundle(systemFolder + "/Echo.vst");
    system.processes.handler = acceptingValidator(system, vstHandOff);
    QWVSTManager manager;
    QVERIFY(manager.database().empty());
    manager.validate();
    QCOMPARE(pathsOf(QWVSTManager()), QStringList{systemFolder + "/Echo.vst"});
}

void tst_PluginBadInput::recordsWithOddValuesAreKept()
{
    FakeSystem system;
    SystemScope current(system);
    system.writePropertyList(vstDatabase, QVariantList{QVariantMap{{"path", "/VST/A.vst"}, {"ignore", "yes"}},
                                                       QVariantMap{{"path", "/VST/B.vst"}, {"modificationDate", "now"}},
                                                       QVariantMap{{"path", 5LL}, {"name", "no path"}}});
    QWVSTManager manager;
    QCOMPARE(pathsOf(manager), (QStringList{"/VST/A.vst", "/VST/B.vst", ""}));
    QVERIFY(!manager.database()[0]->ignore());
    QVERIFY(!manager.database()[1]->modificationDate());
    manager.validate(); // none of them is there
    QVERIFY(manager.database().empty());
    QCOMPARE(system.readPropertyList(vstDatabase), QVariant(QVariantList()));
}

void tst_PluginBadInput::databaseWithoutPermissionIsAnEmptyCatalogAndStays()
{
    FakeSystem system;
    SystemScope current(system);
    writeCatalog(system, {systemFolder + "/Old.vst"});
    system.addVSTBundle(systemFolder + "/New.vst");
    const auto before = system.readFile(vstDatabase);
    QVERIFY(setForbidden(system, vstDatabase, true));
    system.processes.handler = acceptingValidator(system, vstHandOff);
    {
        const OrdinaryUser user;
        QVERIFY(user.isReady);
        QWVSTManager manager;
        QVERIFY(manager.database().empty());
        manager.validate();
        QCOMPARE(pathsOf(manager), QStringList{systemFolder + "/New.vst"});
    }
    QCOMPARE(system.readFile(vstDatabase), before);
    QVERIFY(system.alerts.shown.isEmpty());
}

void tst_PluginBadInput::bundleHandOffThatIsNoDictionaryCountsAsSuccess_data()
{
    QTest::addColumn<QByteArray>("bytes");
    const QByteArray whole = platform::PropertyList::toXml(QVariantMap{{"ignore", true}}).trimmed();
    QTest::newRow("garbage") << QByteArray("\x00\xff", 2);
    QTest::newRow("an array") << platform::PropertyList::toXml(QVariantList{1LL});
    QTest::newRow("wrongly typed") << platform::PropertyList::toXml(QVariantMap{{"ignore", "yes"}, {"name", 1LL}});
    addRowsCutShort(whole);
}

void tst_PluginBadInput::bundleHandOffThatIsNoDictionaryCountsAsSuccess()
{
    QFETCH(QByteArray, bytes);
    FakeSystem system;
    SystemScope current(system);
    system.addVSTBundle(systemFolder + "/Echo.vst");
    system.processes.handler = [&](const ChildProcessRequest &) {
        system.writeFile(vstHandOff, bytes);
        return ChildProcessResult{};
    };
    QWVSTManager manager;
    manager.validate();
    QVERIFY(system.alerts.shown.isEmpty());
    QVERIFY(!manager.database().front()->ignore());
    QVERIFY(!system.readFile(vstHandOff));
}

void tst_PluginBadInput::oddBundleNamesGoAllTheWay()
{
    FakeSystem system;
    SystemScope current(system);
    const QStringList names{"A & B",          "a:b",        "🎛", "שלום", QString(60, QChar(0x20AC)), "x\x01y\rz",
                            "tab\tnew\nline", "<i>&amp;<i>"};
    for (const QString &name : names)
        system.addVSTBundle(systemFolder + '/' + name + ".vst");
    system.processes.handler = acceptingValidator(system, vstHandOff);
    QWVSTManager().validate();
    QWVSTManager manager; // read back from the file
    manager.validate();
    QCOMPARE(manager.database().size(), std::size_t(names.size()));
    QCOMPARE(system.processes.runs.size(), std::size_t(names.size()));
    const QStringList titles = titlesOf(*manager.effectsMenuWithTargetAction(this, "insertPlugin:"));
    QCOMPARE(sorted(titles), sorted(names));
}

QW_TEST_MAIN(tst_PluginBadInput)
#include "tst_PluginBadInput.moc"

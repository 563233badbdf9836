#include "CatalogTestSupport.h"
#include "MenuTestSupport.h"
#include "OwnGraylist.h"
#include "PluginTestSupport.h"
#include "fakes/QWTestMain.h"

#include <QWPlatform/foundation/PropertyList.h>
#include <QWUtilities/plugins/QWAUManager.h>
#include <QWUtilities/plugins/QWVSTManager.h>

using platform::ChildProcessRequest;
using platform::ChildProcessResult;
using platform::SystemScope;

namespace
{
const QVariantList knownDelay{graylistEntry("Dlay", "Acme", "Known Delay")};

/// A machine with one unit, "Dlay" by "Acme", whose validator accepts it. The graylist of this program holds @p entries
/// (or bytes).
struct UnitMachine
{
    template <class Entries>
    explicit UnitMachine(const Entries &entries)
        : graylist(auGraylist, entries)
    {
        system.components.add("aufx", "Dlay", "Acme", "Acme: Delay");
        system.processes.handler = acceptingValidator(system, auHandOff);
    }

    FakeSystem system;
    SystemScope current{system};
    OwnGraylist graylist;
};

/// The same with one bundle.
struct BundleMachine
{
    template <class Entries>
    BundleMachine(const Entries &entries, const QString &identifier)
        : graylist(vstGraylist, entries)
    {
        system.addVSTBundle(systemFolder + "/Echo.vst", identifier);
        system.processes.handler = acceptingValidator(system, vstHandOff);
    }

    FakeSystem system;
    SystemScope current{system};
    OwnGraylist graylist;
};
} // namespace

/// Plug-ins known to cause problems, and what the user answers about them.
class tst_PluginGraylists : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void shippedGraylistWarnsOfAUnit();
    void hostWithoutGraylistUsesEveryUnit();
    void alertsComeBeforeTheSaves();
    void graylistedUnitCanBeIgnored();
    void graylistedUnitCanBeUsed();
    void unitGraylistComparesSubtypeAndManufacturerOnly();
    void unitGraylistNumbersMayBeReal();
    void firstUnitGraylistEntryWins();
    void oddUnitGraylistsAreHarmless_data();
    void oddUnitGraylistsAreHarmless();
    void shippedGraylistWarnsOfABundle();
    void hostWithoutGraylistUsesEveryBundle();
    void graylistedBundleCanBeIgnoredOrUsed_data();
    void graylistedBundleCanBeIgnoredOrUsed();
    void oddBundleGraylistsAreHarmless_data();
    void oddBundleGraylistsAreHarmless();
};

void tst_PluginGraylists::shippedGraylistWarnsOfAUnit()
{
    FakeSystem system;
    SystemScope current(system);
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

void tst_PluginGraylists::hostWithoutGraylistUsesEveryUnit()
{
    FakeSystem system;
    SystemScope current(system);
    system.components.add("aufx", "wbDl", "Glmf", "Glimmerfrog: Own Name"); // on the framework's own list
    system.processes.handler = acceptingValidator(system, auHandOff);
    HostsOwn<QWAUManager>().validate();
    QVERIFY(system.alerts.shown.isEmpty());
    QCOMPARE(system.processes.runs.size(), std::size_t(1));
}

void tst_PluginGraylists::alertsComeBeforeTheSaves()
{
    UnitMachine machine(knownDelay);
    FakeSystem &system = machine.system;
    system.alerts.answerWith({"Use"});
    QList<QVariantList> savedWhileShown;
    system.alerts.whileShown = [&] { savedWhileShown.append(system.readPropertyList(auDatabase).toList()); };
    QList<int> keyboardAskedWhileTried;
    system.processes.handler = [&](const ChildProcessRequest &) {
        keyboardAskedWhileTried.append(system.keyboard.asked);
        return ChildProcessResult{};
    };
    HostsOwn<QWAUManager>().validate();
    QCOMPARE(savedWhileShown.size(), 2);
    QVERIFY(savedWhileShown[0].isEmpty());                                   // the question, before the record is kept
    QCOMPARE(savedWhileShown[1].front().toMap()["ignore"], QVariant(false)); // the failure, before it counts
    QCOMPARE(keyboardAskedWhileTried, QList<int>{1});
}

void tst_PluginGraylists::graylistedUnitCanBeIgnored()
{
    UnitMachine machine(knownDelay);
    machine.system.alerts.answerWith({"Ignore"});
    HostsOwn<QWAUManager> manager;
    manager.validate();
    manager.validate();
    QCOMPARE(machine.system.alerts.shown.size(), 1);
    QVERIFY(machine.system.processes.runs.empty());
    QVERIFY(manager.database().front()->ignore());
    QVERIFY(QWAUManager().database().front()->ignore());
    QVERIFY(manager.effectsMenuWithTargetAction(this, "insertPlugin:")->isEmpty());
}

void tst_PluginGraylists::graylistedUnitCanBeUsed()
{
    UnitMachine machine(knownDelay);
    machine.system.alerts.answerWith({"Use"});
    HostsOwn<QWAUManager> manager;
    manager.validate();
    QCOMPARE(machine.system.processes.runs.size(), std::size_t(1));
    QVERIFY(!manager.database().front()->ignore());
}

void tst_PluginGraylists::unitGraylistComparesSubtypeAndManufacturerOnly()
{
    FakeSystem system;
    SystemScope current(system);
    QVariantMap negative = graylistEntry("Dlay", "Acme", "High Codes");
    negative["subtype"] = -1453235613LL; // 0xA9616263, as a signed word
    negative["manufacturer"] = 0xFFFFFFFFLL;
    const OwnGraylist graylist(auGraylist, QVariantList{graylistEntry("Dlay", "Acme", "Known Delay"), negative});
    system.components.add("augn", "Dlay", "Acme", "Acme: Generator");
    system.components.add("aufx", "Dlay", "Othr", "Other: Delay");
    system.components.add("aufx", "Revb", "Acme", "Acme: Reverb");
    system.components.add(platform::AudioComponent{platform::fourCharCode("aumf"), 0xA9616263, 0xFFFFFFFF, 0, 0},
                          "A: B");
    system.processes.handler = acceptingValidator(system, auHandOff);
    HostsOwn<QWAUManager>().validate();
    QCOMPARE(system.alerts.shown.size(), 2);
    QVERIFY(system.alerts.shown[0].contains("'High Codes'"));
    QVERIFY(system.alerts.shown[1].contains("'Known Delay'"));
}

void tst_PluginGraylists::unitGraylistNumbersMayBeReal()
{
    QVariantMap fraction = graylistEntry("Dlay", "Acme", "Fraction");
    fraction["subtype"] = fraction["subtype"].toDouble() + 0.75; // its whole part counts
    QVariantMap huge = graylistEntry("Revb", "Acme", "Huge");
    huge["subtype"] = 1e300;
    UnitMachine machine(QVariantList{huge, fraction});
    machine.system.components.add("aufx", "Revb", "Acme", "Acme: Reverb");
    machine.system.components.add({platform::fourCharCode("aufx"), 0, platform::fourCharCode("Acme"), 0, 0},
                                  "Acme: Zero");
    HostsOwn<QWAUManager>().validate();
    QCOMPARE(machine.system.alerts.shown.size(), 1);
    QVERIFY(machine.system.alerts.shown[0].contains("'Fraction'"));
}

void tst_PluginGraylists::firstUnitGraylistEntryWins()
{
    UnitMachine machine(QVariantList{graylistEntry("Dlay", "Acme", "First"), graylistEntry("Dlay", "Acme", "Second")});
    HostsOwn<QWAUManager>().validate();
    QCOMPARE(machine.system.alerts.shown.size(), 1);
    QVERIFY(machine.system.alerts.shown[0].contains("'First'"));
}

void tst_PluginGraylists::oddUnitGraylistsAreHarmless_data()
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
    addRowsCutShort(whole, 7);
}

void tst_PluginGraylists::oddUnitGraylistsAreHarmless()
{
    QFETCH(QByteArray, bytes);
    UnitMachine machine(bytes);
    HostsOwn<QWAUManager>().validate();
    QVERIFY(machine.system.alerts.shown.isEmpty());
    QCOMPARE(machine.system.processes.runs.size(), std::size_t(1));
}

void tst_PluginGraylists::shippedGraylistWarnsOfABundle()
{
    FakeSystem system;
    SystemScope current(system);
    system.addVSTBundle(systemFolder + "/Own Name.vst", "com.glimmerfrog.wobbledelay");
    QWVSTManager().validate();
    QCOMPARE(system.alerts.shown,
             QStringList{"The 'Own Name' VST has been known to cause problems with Quorwell Engineering products."});
    QCOMPARE(system.alerts.alerts.front().informativeText,
             "Would you like to ignore this VST or would you like to continue to validate it and use it?");
    QCOMPARE(system.alerts.alerts.front().buttons, (QStringList{"Ignore", "Use"}));
}

void tst_PluginGraylists::hostWithoutGraylistUsesEveryBundle()
{
    FakeSystem system;
    SystemScope current(system);
    system.addVSTBundle(systemFolder + "/Own Name.vst", "com.glimmerfrog.wobbledelay"); // on the framework's own list
    system.processes.handler = acceptingValidator(system, vstHandOff);
    HostsOwn<QWVSTManager>().validate();
    QVERIFY(system.alerts.shown.isEmpty());
    QCOMPARE(system.processes.runs.size(), std::size_t(1));
}

void tst_PluginGraylists::graylistedBundleCanBeIgnoredOrUsed_data()
{
    QTest::addColumn<QString>("identifier");
    QTest::addColumn<QStringList>("answers");
    QTest::addColumn<int>("runs");
    QTest::newRow("ignored") << "com.acme.echo" << QStringList{"Ignore"} << 0;
    QTest::newRow("used") << "com.acme.echo" << QStringList{"Use"} << 1;
    QTest::newRow("another case") << "com.Acme.echo" << QStringList() << 1;
    QTest::newRow("longer") << "com.acme.echo2" << QStringList() << 1;
    QTest::newRow("none") << "" << QStringList() << 1;
}

void tst_PluginGraylists::graylistedBundleCanBeIgnoredOrUsed()
{
    QFETCH(QString, identifier);
    QFETCH(QStringList, answers);
    QFETCH(int, runs);
    BundleMachine machine(QVariantList{"", 5LL, "com.acme.echo"}, identifier);
    machine.system.alerts.answerWith(answers);
    HostsOwn<QWVSTManager> manager;
    manager.validate();
    manager.validate();
    QCOMPARE(machine.system.alerts.shown.size(), answers.size());
    QCOMPARE(static_cast<int>(machine.system.processes.runs.size()), runs);
    QCOMPARE(manager.database().front()->ignore(), runs == 0);
}

void tst_PluginGraylists::oddBundleGraylistsAreHarmless_data()
{
    QTest::addColumn<QByteArray>("bytes");
    const QByteArray whole = platform::PropertyList::toXml(QVariantList{"com.acme.echo"}).trimmed();
    QTest::newRow("garbage") << QByteArray("\x00\xff", 2);
    QTest::newRow("a dictionary") << platform::PropertyList::toXml(QVariantMap{{"com.acme.echo", true}});
    QTest::newRow("numbers") << platform::PropertyList::toXml(QVariantList{1LL, QVariantList{"com.acme.echo"}});
    addRowsCutShort(whole, 7);
}

void tst_PluginGraylists::oddBundleGraylistsAreHarmless()
{
    QFETCH(QByteArray, bytes);
    BundleMachine machine(bytes, "com.acme.echo");
    HostsOwn<QWVSTManager>().validate();
    QVERIFY(machine.system.alerts.shown.isEmpty());
    QCOMPARE(machine.system.processes.runs.size(), std::size_t(1));
}

QW_TEST_MAIN(tst_PluginGraylists)
#include "tst_PluginGraylists.moc"

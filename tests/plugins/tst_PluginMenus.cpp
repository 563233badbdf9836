#include "CatalogTestSupport.h"
#include "MenuTestSupport.h"
#include "PluginTestSupport.h"
#include "fakes/QWTestMain.h"

#include <QWBase/QWMenuSorting.h>
#include <QWUtilities/plugins/QWAUManager.h>
#include <QWUtilities/plugins/QWVSTManager.h>

using platform::SystemScope;

namespace
{
/// Receives what menu items send.
class Receiver : public QObject
{
    Q_OBJECT

public:
    Q_INVOKABLE void insertPlugin(QObject *sender)
    {
        chosen.append(qobject_cast<platform::MenuItem *>(sender)->representedObject());
    }

    QVariantList chosen;
};
} // namespace

/// The menus of both catalogs.
class tst_PluginMenus : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void unitMenusGroupByManufacturerInTitleOrder();
    void unitMenusLeaveOutIgnoredAndPlayers();
    void namesThatTheCatalogLacksAreAskedOfTheRegistry();
    void emptyUnitCatalogGivesEmptyMenus();
    void unitItemsCarryTheirComponentAndSendTheAction();
    void bundleMenuMirrorsTheFolders_data();
    void bundleMenuMirrorsTheFolders();
    void bundleMenusLeaveOutIgnoredAndTheOtherKind();
    void emptyBundleMenusHoldAPlaceholder();
    void bundleItemsShareTheirRecordAndSendTheAction();
    void bundleMenuIsThatOfInsertionOneByOne();
};

void tst_PluginMenus::unitMenusGroupByManufacturerInTitleOrder()
{
    FakeSystem system;
    SystemScope current(system);
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

void tst_PluginMenus::unitMenusLeaveOutIgnoredAndPlayers()
{
    FakeSystem system;
    SystemScope current(system);
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

void tst_PluginMenus::namesThatTheCatalogLacksAreAskedOfTheRegistry()
{
    FakeSystem system;
    SystemScope current(system);
    const QWComponentDescription unit(system.components.add("aufx", "Dlay", "Acme", "Acme: Delay"));
    system.writePropertyList(auDatabase, QVariantList{QVariantMap{{"componentDescription", unit.state()}}});
    QCOMPARE(outline(*QWAUManager().effectsMenuWithTargetAction(this, "insertPlugin:")), "Acme [Delay]");
}

void tst_PluginMenus::emptyUnitCatalogGivesEmptyMenus()
{
    FakeSystem system;
    SystemScope current(system);
    QWAUManager manager;
    QVERIFY(manager.effectsMenuWithTargetAction(this, "insertPlugin:")->isEmpty());
    QVERIFY(manager.instrumentsMenuWithTargetAction(this, "insertPlugin:")->isEmpty());
}

void tst_PluginMenus::unitItemsCarryTheirComponentAndSendTheAction()
{
    FakeSystem system;
    SystemScope current(system);
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

void tst_PluginMenus::bundleMenuMirrorsTheFolders_data()
{
    QTest::addColumn<QStringList>("paths");
    QTest::addColumn<QString>("menu");
    const QString s = systemFolder + '/';
    const QString u = userFolder + '/';
    QTest::newRow("top level") << QStringList{s + "b.vst", s + "A.vst"} << "A, b";
    QTest::newRow("nested") << QStringList{s + "Acme/Delays/Echo.vst"} << "Acme [Delays [Echo]]";
    QTest::newRow("both folders share one tree")
        << QStringList{s + "Acme/B.vst", u + "Acme/A.vst", u + "C.vst"} << "Acme [A, B], C";
    QTest::newRow("no VST component") << QStringList{"/opt/plugins/Acme/Echo.vst"} << "Echo";
    QTest::newRow("first VST component counts") << QStringList{"/VST/a/VST/Echo.vst"} << "a [VST [Echo]]";
    QTest::newRow("capitals matter") << QStringList{"/vst/a/Echo.vst"} << "Echo";
    QTest::newRow("VST is the bundle's folder") << QStringList{"VST/Echo.vst"} << "Echo";
    QTest::newRow("VST is the bundle") << QStringList{"/a/VST"} << "VST";
    QTest::newRow("plug-in before the folder of its name")
        << QStringList{s + "Acme.vst", s + "Acme/Echo.vst", s + "Acme/B/C.vst", s + "Z.vst"} << "Acme, Z";
    QTest::newRow("folder before the plug-in of its name")
        << QStringList{s + "Acme/Echo.vst", s + "Acme.vst", s + "Acme/B.vst"} << "Acme [B, Echo], Acme";
    QTest::newRow("deeper plug-in in the way") << QStringList{s + "A/B.vst", s + "A/B/C.vst"} << "A [B]";
    QTest::newRow("case tells folders apart")
        << QStringList{s + "acme/A.vst", s + "ACME/B.vst"} << "acme [A], ACME [B]";
    QTest::newRow("same name twice") << QStringList{s + "Echo.vst", u + "Echo.vst"} << "Echo, Echo";
    QTest::newRow("ampersands") << QStringList{s + "R & B/A & C.vst"} << "R & B [A & C]";
}

void tst_PluginMenus::bundleMenuMirrorsTheFolders()
{
    QFETCH(QStringList, paths);
    QFETCH(QString, menu);
    FakeSystem system;
    SystemScope current(system);
    writeCatalog(system, paths);
    QCOMPARE(outline(*QWVSTManager().effectsMenuWithTargetAction(this, "insertPlugin:")), menu);
}

void tst_PluginMenus::bundleMenusLeaveOutIgnoredAndTheOtherKind()
{
    FakeSystem system;
    SystemScope current(system);
    system.writePropertyList(vstDatabase, QVariantList{QVariantMap{{"path", "/VST/Effect.vst"}},
                                                       QVariantMap{{"path", "/VST/Synth.vst"}, {"isInstrument", true}},
                                                       QVariantMap{{"path", "/VST/Bad.vst"}, {"ignore", true}}});
    QWVSTManager manager;
    QCOMPARE(outline(*manager.effectsMenuWithTargetAction(this, "insertPlugin:")), "Effect");
    QCOMPARE(outline(*manager.instrumentsMenuWithTargetAction(this, "insertPlugin:")), "Synth");
}

void tst_PluginMenus::emptyBundleMenusHoldAPlaceholder()
{
    FakeSystem system;
    SystemScope current(system);
    writeCatalog(system, {"/VST/A.vst", "/VST/B/C.vst"}, {{"ignore", true}});
    const auto menu = QWVSTManager().effectsMenuWithTargetAction(this, "insertPlugin:");
    QCOMPARE(titlesOf(*menu), QStringList{"No plug-ins found"});
    QVERIFY(!itemOf(*menu, "No plug-ins found")->target());
    QVERIFY(itemOf(*menu, "No plug-ins found")->action().isNull());
}

void tst_PluginMenus::bundleItemsShareTheirRecordAndSendTheAction()
{
    FakeSystem system;
    SystemScope current(system);
    writeCatalog(system, {systemFolder + "/Acme/Echo.vst"});
    Receiver receiver;
    std::unique_ptr<QMenu> menu;
    std::shared_ptr<QWVSTDescription> record;
    {
        QWVSTManager manager;
        menu = manager.effectsMenuWithTargetAction(&receiver, "insertPlugin:");
        record = manager.database().front();
    }
    itemOf(*submenuOf(*menu, "Acme"), "Echo")->trigger();
    QCOMPARE(receiver.chosen.size(), 1);
    QCOMPARE(receiver.chosen.front().value<std::shared_ptr<QWVSTDescription>>(), record);
    record->setIgnore(true); // its catalog is gone
}

void tst_PluginMenus::bundleMenuIsThatOfInsertionOneByOne()
{
    FakeSystem system;
    SystemScope current(system);
    QStringList paths;
    QMenu expected;
    for (int i = 0; i < 500; ++i) {
        const QString name = QString("%1lug %2").arg(i % 3 ? 'p' : 'P').arg(i * 7919 % 250);
        paths.append(systemFolder + '/' + name + ".vst");
        QWMenuSorting::addItemSortedWithTitle(expected, name);
    }
    writeCatalog(system, paths);
    QCOMPARE(outline(*QWVSTManager().effectsMenuWithTargetAction(this, "insertPlugin:")), outline(expected));
}

QW_TEST_MAIN(tst_PluginMenus)
#include "tst_PluginMenus.moc"

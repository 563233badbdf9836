#include "ToolbarFixture.h"

using platform::Toolbar;

/// What of a toolbar is kept in the user defaults, and what is made of whatever stands there.
class tst_ToolbarConfiguration : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void changesAreKept();
    void ownersDisplayModeCountsUntilTheUsersDoes();
    void withoutAutosaveNothingIsStoredOrRead();
    void unusableConfigurationGivesDefaults_data();
    void unusableConfigurationGivesDefaults();
    void unknownAndRepeatedItemsAreLeftOut();
    void hiddenToolbarStaysHidden();
    void foreignKeysOfTheConfigurationStay();
};

void tst_ToolbarConfiguration::changesAreKept()
{
    ToolbarFixture host;
    Toolbar *toolbar = host.make();
    toolbar->insertItemWithItemIdentifierAtIndex("home", 2);
    toolbar->removeItemAtIndex(0);
    toolbar->moveItem(0, 2);
    const QStringList changed{"home", "NSToolbarFlexibleSpaceItem", "forward", "print"};
    QCOMPARE(toolbar->itemIdentifiers(), changed);
    QCOMPARE(host.stored().value("TB Item Identifiers").toStringList(), changed);
    QCOMPARE(host.stored().value("TB Default Item Identifiers").toStringList(), defaultItems);
    QCOMPARE(host.stored().value("TB Display Mode").toInt(), 0);
    QCOMPARE(host.stored().value("TB Is Shown").toBool(), true);
    delete toolbar;
    QVERIFY(host.system.userDefaults().synchronize());
    toolbar = host.make();
    QCOMPARE(toolbar->itemIdentifiers(), changed);
}

void tst_ToolbarConfiguration::ownersDisplayModeCountsUntilTheUsersDoes()
{
    ToolbarFixture host;
    Toolbar *toolbar = host.make();
    QCOMPARE(toolbar->displayMode(), Toolbar::IconOnly);
    toolbar->chooseDisplayMode(Toolbar::LabelOnly);
    QCOMPARE(host.stored().value("TB Display Mode").toInt(), 3);
    delete toolbar;
    toolbar = host.make();
    QCOMPARE(toolbar->displayMode(), Toolbar::LabelOnly);
    QCOMPARE(toolbar->toolButtonStyle(), Qt::ToolButtonTextOnly);
}

void tst_ToolbarConfiguration::withoutAutosaveNothingIsStoredOrRead()
{
    ToolbarFixture host;
    host.store(QVariantMap{{"TB Item Identifiers", QVariantList{"home"}}});
    Toolbar *const toolbar = host.make(false);
    QCOMPARE(toolbar->itemIdentifiers(), defaultItems);
    toolbar->removeItemAtIndex(0);
    QCOMPARE(host.stored().value("TB Item Identifiers").toStringList(), QStringList{"home"});
}

void tst_ToolbarConfiguration::unusableConfigurationGivesDefaults_data()
{
    QTest::addColumn<QVariant>("stored");
    QTest::newRow("a string") << QVariant("back");
    QTest::newRow("a list") << QVariant(QVariantList{"back"});
    QTest::newRow("empty") << QVariant(QVariantMap{});
    QTest::newRow("items are a string") << QVariant(QVariantMap{{"TB Item Identifiers", "home"}});
    QTest::newRow("items are numbers") << QVariant(QVariantMap{{"TB Item Identifiers", QVariantList{1, "home"}}});
    QTest::newRow("mode too large") << QVariant(QVariantMap{{"TB Display Mode", 9}});
    QTest::newRow("mode negative") << QVariant(QVariantMap{{"TB Display Mode", -1}});
    QTest::newRow("mode a string") << QVariant(QVariantMap{{"TB Display Mode", "3"}, {"TB Is Shown", "no"}});
}

void tst_ToolbarConfiguration::unusableConfigurationGivesDefaults()
{
    ToolbarFixture host;
    QFETCH(QVariant, stored);
    host.store(stored);
    const Toolbar *const toolbar = host.make();
    QCOMPARE(toolbar->itemIdentifiers(), defaultItems);
    QCOMPARE(toolbar->displayMode(), Toolbar::IconOnly);
    QVERIFY(!toolbar->isHidden());
}

void tst_ToolbarConfiguration::unknownAndRepeatedItemsAreLeftOut()
{
    ToolbarFixture host;
    const QVariantList items{"back", "gone", "back", Toolbar::SpaceItem, Toolbar::SpaceItem, ""};
    host.store(QVariantMap{{"TB Item Identifiers", items}});
    QCOMPARE(host.make()->itemIdentifiers(), (QStringList{"back", Toolbar::SpaceItem, Toolbar::SpaceItem}));
}

void tst_ToolbarConfiguration::hiddenToolbarStaysHidden()
{
    ToolbarFixture host;
    host.store(QVariantMap{{"TB Is Shown", false}});
    const Toolbar *const toolbar = host.make();
    host.window.show();
    QVERIFY(toolbar->isHidden());
}

void tst_ToolbarConfiguration::foreignKeysOfTheConfigurationStay()
{
    ToolbarFixture host;
    host.store(QVariantMap{{"Other", "kept"}});
    host.make()->removeItemAtIndex(0);
    QCOMPARE(host.stored().value("Other").toString(), QString("kept"));
}

QTEST_MAIN(tst_ToolbarConfiguration)
#include "tst_ToolbarConfiguration.moc"

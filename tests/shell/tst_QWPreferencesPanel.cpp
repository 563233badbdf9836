#include "PreferencesFixture.h"
#include "fakes/QWTestMain.h"

#include <QWPlatform/appkit/ResponderChain.h>

using platform::Toolbar;

/// Who the panel is, how it opens and closes, and what its toolbar shows.
class tst_QWPreferencesPanel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void firstInstalledIsTheSharedOne();
    void hostWithoutPanelOpensNothing();
    void toolbarIsThatOfThePanes();
    void toolTipIsTheViews();
    void firstOpeningShowsTheFirstPane();
    void secondOpeningKeepsThePane();
    void openingWithAPaneShowsIt();
    void openingTheCurrentPaneOnlyCentres();
    void unknownPaneIsNone();
    void closingEndsEditing();
    void closingHides();
    void panelComesBackFromALostScreen();
    void hostWithoutPanesGetsAnEmptyToolbar();
    void incompleteInterfaceOpensNothing_data();
    void incompleteInterfaceOpensNothing();
};

void tst_QWPreferencesPanel::firstInstalledIsTheSharedOne()
{
    const PreferencesFixture host;
    auto *const first = &host.controller();
    QVERIFY(qobject_cast<TestPreferences *>(first));
    QCOMPARE(&QWPreferencesPanel::install<TestPreferences>(), first);
    QCOMPARE(&QWPreferencesPanel::sharedInstance(), first);
}

void tst_QWPreferencesPanel::hostWithoutPanelOpensNothing()
{
    FakeSystem system;
    const platform::SystemScope scope(system);
    QWPreferencesPanel::open();
    QWPreferencesPanel::openPane("general");
    QWPreferencesPanel::update();
    QVERIFY(!QWPreferencesPanel::sharedInstance().panel());
    QVERIFY(!QWPreferencesPanel::sharedInstance().paneForIdentifier("general"));
}

void tst_QWPreferencesPanel::toolbarIsThatOfThePanes()
{
    const PreferencesFixture host;
    QWPreferencesPanel::open();
    Toolbar &toolbar = host.toolbar();
    const QStringList all{"general", "files", "wide"};
    QCOMPARE(toolbar.identifier(), "preferencesToolbar");
    QVERIFY(!toolbar.allowsUserCustomization());
    QVERIFY(!toolbar.autosavesConfiguration());
    QCOMPARE(toolbar.displayMode(), Toolbar::IconAndLabel);
    QVERIFY(toolbar.isVisible());
    QCOMPARE(host.controller().toolbarItemIdentifiers(), all);
    QCOMPARE(toolbar.itemIdentifiers(), all);
    QCOMPARE(toolbar.allowedItemIdentifiers(), all);
    for (const QString &identifier : all)
        QVERIFY2(toolbar.itemWithIdentifier(identifier)->isCheckable(), qPrintable(identifier));
    const platform::ToolbarItem &item = *toolbar.itemWithIdentifier("files");
    QCOMPARE(item.label(), "Title of files");
    QVERIFY(!item.icon().isNull());
    QCOMPARE(item.target(), &host.controller());
    QCOMPARE(item.action().name(), "changePane:");
    QVERIFY(!toolbar.paletteItem("unknown"));
}

void tst_QWPreferencesPanel::toolTipIsTheViews()
{
    const PreferencesFixture host;
    QWPreferencesPanel::open();
    host.controller().paneForIdentifier("files")->setToolTip("Sound files");
    const auto item = host.toolbar().paletteItem("files");
    QCOMPARE(item->toolTip(), "Sound files");
}

void tst_QWPreferencesPanel::firstOpeningShowsTheFirstPane()
{
    const PreferencesFixture host;
    QWPreferencesPanel::open();
    QVERIFY(host.panel().isVisible());
    QVERIFY(platform::isPanel(&host.panel()));
    QVERIFY(!platform::isFloatingPanel(&host.panel()));
    QTRY_COMPARE(platform::keyWindow(), &host.panel());
    QCOMPARE(host.current(), "general");
    QCOMPARE(host.toolbar().selectedItemIdentifier(), "general");
    QVERIFY(host.toolbar().itemWithIdentifier("general")->isChecked());
    QVERIFY(host.controller().currentPane()->isVisible());
    QVERIFY(host.isCentred());
    QCOMPARE(host.noted(), QStringList({"general update -", "files update -", "wide update -", "general will become -",
                                        "general did become +"}));
}

void tst_QWPreferencesPanel::secondOpeningKeepsThePane()
{
    const PreferencesFixture host;
    QWPreferencesPanel::open();
    host.choose("files");
    host.panel().move(30, 40);
    host.panel().close();
    host.noted();
    QWPreferencesPanel::open();
    QVERIFY(host.panel().isVisible());
    QCOMPARE(host.current(), "files");
    QCOMPARE(host.panel().pos(), QPoint(30, 40));
    QVERIFY(host.noted().isEmpty());
}

void tst_QWPreferencesPanel::openingWithAPaneShowsIt()
{
    const PreferencesFixture host;
    QWPreferencesPanel::openPane("files");
    QCOMPARE(host.current(), "files");
    QCOMPARE(host.toolbar().selectedItemIdentifier(), "files");
    host.panel().move(0, 0);
    QWPreferencesPanel::openPane("wide");
    QCOMPARE(host.current(), "wide");
    QCOMPARE(host.toolbar().selectedItemIdentifier(), "wide");
    QVERIFY(host.isCentred());
}

void tst_QWPreferencesPanel::openingTheCurrentPaneOnlyCentres()
{
    const PreferencesFixture host;
    QWPreferencesPanel::openPane("files");
    host.panel().move(0, 0);
    host.noted();
    QWPreferencesPanel::openPane("files");
    QVERIFY(host.isCentred());
    QVERIFY(host.noted().isEmpty());
}

void tst_QWPreferencesPanel::unknownPaneIsNone()
{
    const PreferencesFixture host;
    QWPreferencesPanel::openPane("unknown");
    QCOMPARE(host.current(), "general");
    host.choose("files");
    QWPreferencesPanel::openPane("unknown");
    QCOMPARE(host.current(), "files");
    QCOMPARE(host.toolbar().selectedItemIdentifier(), "files");
}

void tst_QWPreferencesPanel::closingEndsEditing()
{
    const PreferencesFixture host;
    QWPreferencesPanel::open();
    QVERIFY(QTest::qWaitForWindowActive(&host.panel()));
    auto *const field = host.panel().findChild<QLineEdit *>("nameField");
    connect(field, &QLineEdit::editingFinished, host.controller().currentPane(),
            [&] { host.controller().currentPane()->itemChanged(field); });
    field->setFocus();
    QTest::keyClicks(field, "Ada");
    QVERIFY(!host.system.userDefaults().isSet("Name"));
    host.panel().close();
    QCOMPARE(host.system.userDefaults().string("Name"), "Ada");
    QVERIFY(!field->hasFocus());
}

void tst_QWPreferencesPanel::closingHides()
{
    const PreferencesFixture host;
    QWPreferencesPanel::open();
    const auto *const panel = &host.panel();
    QTest::keyClick(&host.panel(), Qt::Key_Escape);
    QVERIFY(!panel->isVisible());
    QCOMPARE(host.current(), "general");
    QWPreferencesPanel::open();
    QCOMPARE(&host.panel(), panel);
}

void tst_QWPreferencesPanel::panelComesBackFromALostScreen()
{
    const PreferencesFixture host;
    QWPreferencesPanel::open();
    host.panel().close();
    host.panel().move(-4000, 9000);
    QWPreferencesPanel::open();
    QVERIFY(host.panel().screen()->availableGeometry().contains(host.panel().geometry()));
}

void tst_QWPreferencesPanel::hostWithoutPanesGetsAnEmptyToolbar()
{
    const PreferencesFixture host(false);
    QWPreferencesPanel::open();
    QVERIFY(host.panel().isVisible());
    QVERIFY(host.toolbar().itemIdentifiers().isEmpty());
    QVERIFY(!host.controller().currentPane());
    QWPreferencesPanel::openPane("general");
    QWPreferencesPanel::update();
    host.panel().close();
    QVERIFY(!host.controller().currentPane());
}

void tst_QWPreferencesPanel::incompleteInterfaceOpensNothing_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::newRow("broken") << QByteArray("<ui>");
    QTest::newRow("without panel") << QByteArray("<ui version=\"4.0\"><widget class=\"QWidget\" name=\"nib\"/></ui>");
    QTest::newRow("without panes") << QByteArray("<ui version=\"4.0\"><widget class=\"QWidget\" name=\"nib\"><widget "
                                                 "class=\"platform::Panel\" name=\"panel\"/></widget></ui>");
    QTest::newRow("panel of another class")
        << QByteArray("<ui version=\"4.0\"><widget class=\"QWidget\" name=\"panel\"/></ui>");
}

void tst_QWPreferencesPanel::incompleteInterfaceOpensNothing()
{
    QFETCH(QByteArray, file);
    const PreferencesFixture host;
    host.system.addHostResource("TestPreferences.ui", file);
    QWPreferencesPanel::open();
    QVERIFY(!host.controller().panel());
    QWPreferencesPanel::update();
    host.system.addHostResource("TestPreferences.ui", host.file()); // put right
    QWPreferencesPanel::open();
    QVERIFY(host.panel().isVisible());
}

QW_TEST_MAIN(tst_QWPreferencesPanel)
#include "tst_QWPreferencesPanel.moc"

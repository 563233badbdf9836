#include "PreferencesFixture.h"
#include "fakes/QWTestMain.h"

#include <QWPlatform/appkit/responders/ControlActions.h>

/// The change from one pane to another: who is told, and what becomes of the panel's frame.
class tst_PreferencesPaneChange : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void hooksComeInOrder();
    void currentPaneIsNotChangedAgain();
    void otherSendersChangeNothing();
    void keyboardGoesOnInTheNewPane();
    void changeOfPaneCommitsAField();
    void contentTakesTheSizeOfThePane();
    void visiblePanelKeepsItsTopEdge();
    void hiddenPanelKeepsItsBottomLeftCorner();
    void resizingIsAnimated();
    void choiceDuringTheAnimationWins();
    void wideToolbarWidensThePanel();
};

void tst_PreferencesPaneChange::hooksComeInOrder()
{
    const PreferencesFixture host;
    QWPreferencesPanel::open();
    host.noted();
    host.choose("files");
    QCOMPARE(host.noted(), QStringList({"general will resign +", "files will become -", "general did resign -",
                                        "files did become +"}));
    QCOMPARE(host.content().findChildren<QWPreferencesPane *>().size(), 1);
    QVERIFY(!host.controller().paneForIdentifier("general")->isVisible());
    host.choose("general");
    QCOMPARE(host.noted(), QStringList({"files will resign +", "general will become -", "files did resign -",
                                        "general did become +"}));
}

void tst_PreferencesPaneChange::currentPaneIsNotChangedAgain()
{
    const PreferencesFixture host;
    QWPreferencesPanel::open();
    host.noted();
    host.choose("general");
    QVERIFY(host.noted().isEmpty());
    QVERIFY(host.toolbar().itemWithIdentifier("general")->isChecked());
}

void tst_PreferencesPaneChange::otherSendersChangeNothing()
{
    const PreferencesFixture host;
    QWPreferencesPanel::open();
    host.noted();
    QObject other;
    platform::ToolbarItem unknown("unknown");
    host.controller().changePane(&other);
    host.controller().changePane(nullptr);
    host.controller().changePane(&unknown);
    QVERIFY(host.noted().isEmpty());
    QCOMPARE(host.current(), "general");
}

void tst_PreferencesPaneChange::changeOfPaneCommitsAField()
{
    const PreferencesFixture host;
    QWPreferencesPanel::open();
    QVERIFY(QTest::qWaitForWindowActive(&host.panel()));
    auto *const field = host.panel().findChild<QLineEdit *>("nameField");
    QVERIFY(platform::connectControl(*field, "itemChanged:", *host.controller().currentPane()));
    field->setFocus();
    QTest::keyClicks(field, "Jo");
    host.choose("files");
    QCOMPARE(host.system.userDefaults().string("Name"), QString("Jo"));
    QCOMPARE(host.noted().filter("changed").size(), 1);
}

void tst_PreferencesPaneChange::keyboardGoesOnInTheNewPane()
{
    const PreferencesFixture host;
    QWPreferencesPanel::open();
    QVERIFY(QTest::qWaitForWindowActive(&host.panel()));
    auto *const box = new QLineEdit(host.controller().paneForIdentifier("files"));
    auto *const field = host.panel().findChild<QLineEdit *>("nameField");
    field->setFocus();
    host.choose("files");
    QCOMPARE(QApplication::focusWidget(), host.controller().currentPane()); // and on none of the toolbar's buttons
    QTest::keyClick(host.panel().windowHandle(), Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget(), box);

    QWidget *const button = host.toolbar().widgetForAction(host.toolbar().itemWithIdentifier("general"));
    button->setFocus();
    QTest::keyClick(button, Qt::Key_Space);
    QCOMPARE(host.current(), "general");
    QCOMPARE(QApplication::focusWidget(), button); // whoever goes through the toolbar goes on there
}

void tst_PreferencesPaneChange::contentTakesTheSizeOfThePane()
{
    const PreferencesFixture host;
    QWPreferencesPanel::open();
    QCoreApplication::processEvents();
    QCOMPARE(host.content().size(), QSize(400, 200));
    QCOMPARE(host.controller().currentPane()->geometry(), QRect(0, 0, 400, 200));
    host.choose("wide");
    QCoreApplication::processEvents();
    QCOMPARE(host.content().size(), QSize(520, 120));
    QCOMPARE(host.controller().currentPane()->geometry(), QRect(0, 0, 520, 120));
}

void tst_PreferencesPaneChange::visiblePanelKeepsItsTopEdge()
{
    const PreferencesFixture host;
    QWPreferencesPanel::open();
    const QRect before = host.panel().geometry();
    host.choose("files");
    QCOMPARE(host.panel().geometry(), QRect(before.topLeft(), before.size() + QSize(0, 120)));
    host.choose("wide");
    QCOMPARE(host.panel().geometry(), QRect(before.topLeft(), before.size() + QSize(120, -80)));
}

void tst_PreferencesPaneChange::hiddenPanelKeepsItsBottomLeftCorner()
{
    const PreferencesFixture host;
    QWPreferencesPanel::open();
    host.panel().close();
    const QRect before = host.panel().geometry();
    host.choose("files");
    QCOMPARE(host.panel().geometry().bottomLeft(), before.bottomLeft());
    QCOMPARE(host.panel().size(), before.size() + QSize(0, 120));
    QVERIFY(!host.panel().isVisible());
}

void tst_PreferencesPaneChange::resizingIsAnimated()
{
    const PreferencesFixture host;
    QApplication::setStyle(new MotionStyle(150));
    QWPreferencesPanel::open();
    const QRect before = host.panel().geometry();
    host.choose("files");
    QVERIFY(host.panel().height() < before.height() + 120); // on its way
    QCOMPARE(host.noted().last(), "files did become +");    // but the pane is there
    QTRY_COMPARE(host.panel().geometry(), QRect(before.topLeft(), before.size() + QSize(0, 120)));
    QTRY_COMPARE(host.content().size(), QSize(400, 320));
}

void tst_PreferencesPaneChange::choiceDuringTheAnimationWins()
{
    const PreferencesFixture host;
    QApplication::setStyle(new MotionStyle(150));
    QWPreferencesPanel::open();
    const QRect before = host.panel().geometry();
    host.choose("files");
    host.choose("wide");
    QWPreferencesPanel::openPane("wide"); // centred for the size to come
    QTRY_COMPARE(host.panel().size(), before.size() + QSize(120, -80));
    QVERIFY(host.isCentred());
    QCOMPARE(host.current(), "wide");
}

void tst_PreferencesPaneChange::wideToolbarWidensThePanel()
{
    const PreferencesFixture host;
    QFont large = QApplication::font();
    const QFont usual = large;
    large.setPointSize(40);
    QApplication::setFont(large);
    QWPreferencesPanel::open();
    QVERIFY(host.panel().width() >= host.toolbar().sizeHint().width());
    QCOMPARE(host.controller().currentPane()->width(), host.panel().width());
    QApplication::setFont(usual);
}

QW_TEST_MAIN(tst_PreferencesPaneChange)
#include "tst_PreferencesPaneChange.moc"

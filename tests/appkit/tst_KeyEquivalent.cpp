#include "MenuTarget.h"

#include <QWPlatform/appkit/menus/MenuKeys.h>

#include <QDialog>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QTest>

using platform::addMenuItem;
using platform::MenuItem;

/// Keys of menu items: how they show, which press is theirs, and when it performs them.
class tst_KeyEquivalent : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isShownButNotRegistered_data();
    void isShownButNotRegistered();
    void matchesItsKeyOnly_data();
    void matchesItsKeyOnly();
    void firstEnabledItemPerformsAKey();
    void repeatsPerformNothing();
    void textKeepsOnlyWhatItTypes();
    void menusBehindModalPanelsPerformNothing_data();
    void menusBehindModalPanelsPerformNothing();
    void menusOfAModalWindowItselfPerform();
    void submenusAreSearched();
    void titleOfTheMenuLightsUpForAMoment();
};

void tst_KeyEquivalent::isShownButNotRegistered_data()
{
    QTest::addColumn<QString>("character");
    QTest::addColumn<quint32>("mask");
    QTest::addColumn<QString>("shown");
    QTest::newRow("command") << "s" << quint32(MenuItem::Command) << "Save\tCtrl+S";
    QTest::newRow("capital") << "S" << quint32(MenuItem::Command) << "Save\tCtrl+Shift+S";
    QTest::newRow("control") << "s" << quint32(MenuItem::Control) << "Save\tMeta+S";
    QTest::newRow("all") << "s" << quint32(MenuItem::Command | MenuItem::Control | MenuItem::Option | MenuItem::Shift)
                         << "Save\tMeta+Ctrl+Alt+Shift+S";
    QTest::newRow("F5") << QString(QChar(0xf708)) << quint32(0) << "Save\tF5";
    QTest::newRow("F35") << QString(QChar(0xf726)) << quint32(MenuItem::Command) << "Save\tCtrl+F35";
    QTest::newRow("up") << QString(QChar(0xf700)) << quint32(0) << "Save\tUp";
    QTest::newRow("none") << "" << quint32(MenuItem::Command) << "Save";
}

void tst_KeyEquivalent::isShownButNotRegistered()
{
    QFETCH(QString, character);
    QFETCH(quint32, mask);
    MenuItem item("Save");
    item.setKeyEquivalent(character, mask);
    QTEST(item.text(), "shown");
    QVERIFY(item.shortcut().isEmpty());
    QCOMPARE(item.title(), QString("Save"));
    item.setKeyEquivalent({});
    QCOMPARE(item.text(), QString("Save"));
}

void tst_KeyEquivalent::matchesItsKeyOnly_data()
{
    QTest::addColumn<QString>("character");
    QTest::addColumn<quint32>("mask");
    QTest::addColumn<int>("key");
    QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
    QTest::addColumn<bool>("matches");
    const quint32 command = MenuItem::Command;
    const auto none = Qt::KeyboardModifiers();
    const auto control = Qt::KeyboardModifiers(Qt::ControlModifier);
    QTest::newRow("same") << "s" << command << int(Qt::Key_S) << control << true;
    QTest::newRow("other key") << "s" << command << int(Qt::Key_D) << control << false;
    QTest::newRow("modifier missing") << "s" << command << int(Qt::Key_S) << none << false;
    QTest::newRow("modifier too many") << "s" << command << int(Qt::Key_S) << (control | Qt::ShiftModifier) << false;
    QTest::newRow("capital is shift") << "S" << command << int(Qt::Key_S) << (control | Qt::ShiftModifier) << true;
    QTest::newRow("shift types a mark") << "?" << command << int(Qt::Key_Question) << (control | Qt::ShiftModifier)
                                        << true;
    QTest::newRow("keypad is no modifier")
        << "5" << command << int(Qt::Key_5) << (control | Qt::KeypadModifier) << true;
    QTest::newRow("function key") << QString(QChar(0xf704)) << quint32(0) << int(Qt::Key_F1) << none << true;
    QTest::newRow("shifted function key")
        << QString(QChar(0xf704)) << quint32(0) << int(Qt::Key_F1) << Qt::KeyboardModifiers(Qt::ShiftModifier) << false;
    QTest::newRow("none") << "" << command << 0 << control << false;
}

void tst_KeyEquivalent::matchesItsKeyOnly()
{
    QFETCH(QString, character);
    QFETCH(quint32, mask);
    QFETCH(int, key);
    QFETCH(Qt::KeyboardModifiers, modifiers);
    MenuItem item("Save");
    item.setKeyEquivalent(character, mask);
    QTEST(item.matches(QKeyEvent(QEvent::KeyPress, key, modifiers)), "matches");
}

void tst_KeyEquivalent::firstEnabledItemPerformsAKey()
{
    MenuTarget target;
    target.refused = "First";
    QMenu menu;
    for (const char *title : {"First", "Second", "Third"})
        addMenuItem(menu, title, "choose:", "s")->setTarget(&target);
    const QKeyEvent press(QEvent::KeyPress, Qt::Key_S, Qt::ControlModifier);
    QVERIFY(platform::performKeyEquivalent(menu, press));
    QCOMPARE(target.senders, QObjectList{menu.actions().at(1)});
    QVERIFY(!platform::performKeyEquivalent(menu, QKeyEvent(QEvent::KeyPress, Qt::Key_S, Qt::NoModifier)));
}

void tst_KeyEquivalent::repeatsPerformNothing()
{
    MenuTarget target;
    QMainWindow window;
    addMenuItem(*window.menuBar()->addMenu("File"), "Save", "choose:", "s")->setTarget(&target);
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    QVERIFY(!platform::performKeyEquivalent(QKeyEvent(QEvent::KeyPress, Qt::Key_S, Qt::ControlModifier, {}, true)));
    QVERIFY(target.senders.isEmpty());
    QVERIFY(platform::performKeyEquivalent(QKeyEvent(QEvent::KeyPress, Qt::Key_S, Qt::ControlModifier)));
    QCOMPARE(target.senders.size(), 1);
}

void tst_KeyEquivalent::textKeepsOnlyWhatItTypes()
{
    MenuTarget target;
    QMainWindow window;
    auto *const field = new QLineEdit;
    window.setCentralWidget(field);
    QMenu &menu = *window.menuBar()->addMenu("File");
    addMenuItem(menu, "Save", "choose:", "s")->setTarget(&target);
    addMenuItem(menu, "Split", "choose:", "s", 0)->setTarget(&target);
    addMenuItem(menu, "Stretch", "choose:", "s", MenuItem::Command | MenuItem::Option)->setTarget(&target);
    addMenuItem(menu, "Run", "choose:", QChar(0xf708), 0)->setTarget(&target);
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    const auto performs = [](int key, Qt::KeyboardModifiers modifiers, const QString &text) {
        return platform::performKeyEquivalent(QKeyEvent(QEvent::KeyPress, key, modifiers, text));
    };
    field->setFocus();
    QVERIFY(performs(Qt::Key_S, Qt::ControlModifier, "\x13"));
    QVERIFY(!performs(Qt::Key_S, Qt::NoModifier, "s"));
    QVERIFY(performs(Qt::Key_S, Qt::ControlModifier | Qt::AltModifier, "\x13"));
    QVERIFY(!performs(Qt::Key_S, Qt::ControlModifier | Qt::AltModifier, "ß"));
    QVERIFY(performs(Qt::Key_F5, Qt::NoModifier, {}));
    field->clearFocus();
    QVERIFY(performs(Qt::Key_S, Qt::NoModifier, "s"));
    QCOMPARE(target.senders.size(), 4);
}

void tst_KeyEquivalent::menusBehindModalPanelsPerformNothing_data()
{
    QTest::addColumn<Qt::WindowModality>("modality");
    QTest::addColumn<bool>("isOnTheWindow");
    QTest::addColumn<bool>("performs");
    QTest::newRow("alert") << Qt::ApplicationModal << false << false;
    QTest::newRow("sheet") << Qt::WindowModal << true << false;
    QTest::newRow("sheet of another window") << Qt::WindowModal << false << true;
    QTest::newRow("panel") << Qt::NonModal << true << true;
}

void tst_KeyEquivalent::menusBehindModalPanelsPerformNothing()
{
    QFETCH(const Qt::WindowModality, modality);
    QFETCH(const bool, isOnTheWindow);
    MenuTarget target;
    QMainWindow window;
    QWidget other;
    addMenuItem(*window.menuBar()->addMenu("File"), "Save", "choose:", "s")->setTarget(&target);
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    QDialog panel(isOnTheWindow ? static_cast<QWidget *>(&window) : &other);
    panel.setWindowModality(modality);
    panel.show();
    QVERIFY(QTest::qWaitForWindowActive(&panel));

    const QKeyEvent press(QEvent::KeyPress, Qt::Key_S, Qt::ControlModifier);
    QTEST(platform::performKeyEquivalent(press), "performs");
    panel.hide();
    QVERIFY(platform::performKeyEquivalent(press));
}

void tst_KeyEquivalent::menusOfAModalWindowItselfPerform()
{
    MenuTarget target;
    QMainWindow window;
    addMenuItem(*window.menuBar()->addMenu("File"), "Save", "choose:", "s")->setTarget(&target);
    window.setWindowModality(Qt::ApplicationModal);
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    QVERIFY(platform::performKeyEquivalent(QKeyEvent(QEvent::KeyPress, Qt::Key_S, Qt::ControlModifier)));
}

void tst_KeyEquivalent::submenusAreSearched()
{
    MenuTarget target;
    QMenu menu;
    QMenu *const submenu = platform::addSubmenu(menu, "A & B");
    addMenuItem(*submenu, "Deep", "choose:", "d")->setTarget(&target);
    QCOMPARE(platform::titleOf(*menu.actions().first()), QString("A & B"));
    QVERIFY(platform::performKeyEquivalent(menu, QKeyEvent(QEvent::KeyPress, Qt::Key_D, Qt::ControlModifier)));
    QCOMPARE(target.senders.size(), 1);
    menu.actions().first()->setEnabled(false);
    QVERIFY(!platform::performKeyEquivalent(menu, QKeyEvent(QEvent::KeyPress, Qt::Key_D, Qt::ControlModifier)));
}

void tst_KeyEquivalent::titleOfTheMenuLightsUpForAMoment()
{
    MenuTarget target;
    QMainWindow window;
    QMenu *const edit = window.menuBar()->addMenu("Edit");
    addMenuItem(*platform::addSubmenu(*edit, "Find"), "Find Next", "choose:", "g")->setTarget(&target);
    window.menuBar()->addMenu("View");
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    const auto titleOf = [&](int index) {
        QMenuBar &bar = *window.menuBar();
        return bar.grab(bar.actionGeometry(bar.actions().at(index))).toImage();
    };
    const QImage dark = titleOf(0);
    const QImage neighbour = titleOf(1);
    QVERIFY(platform::performKeyEquivalent(QKeyEvent(QEvent::KeyPress, Qt::Key_G, Qt::ControlModifier)));
    QVERIFY(titleOf(0) != dark);
    QCOMPARE(titleOf(1), neighbour);
    QTRY_COMPARE(titleOf(0), dark);
}

QTEST_MAIN(tst_KeyEquivalent)
#include "tst_KeyEquivalent.moc"

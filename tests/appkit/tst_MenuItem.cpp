#include <QWPlatform/appkit/MenuItem.h>
#include <QWPlatform/appkit/ResponderChain.h>

#include <QDialog>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QTest>

using platform::addMenuItem;
using platform::MenuItem;

/// Keeps who sent it what, and allows or refuses.
class Target : public QObject
{
    Q_OBJECT

public:
    Q_INVOKABLE void choose(QObject *sender) { senders.append(sender); }
    Q_INVOKABLE void plain() { ++plains; }
    Q_INVOKABLE bool validateMenuItem(QAction *item) { return platform::titleOf(*item) != refused; }

    QObjectList senders;
    QString refused;
    int plains = 0;
};

class tst_MenuItem : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { platform::setDelegate(qApp, nullptr); }
    void titleStaysAsGiven_data();
    void titleStaysAsGiven();
    void shortenedTitleKeepsCharactersWhole();
    void titleOfAPlainActionIsWithoutMnemonic();
    void choosingSendsTheActionWithTheItem();
    void actionWithoutColonGetsNoSender();
    void receiverIsFoundWhenChosen();
    void targetThatWentReceivesNothing();
    void clearedActionSendsNothing();
    void changedActionSendsOnce();
    void itemMayBeDeletedByItsAction();
    void openingAMenuValidatesItsItems();
    void recordsTravelInItems();
    void keyEquivalentIsShownButNotRegistered_data();
    void keyEquivalentIsShownButNotRegistered();
    void keyEquivalentMatches_data();
    void keyEquivalentMatches();
    void firstEnabledItemPerformsAKey();
    void repeatsAndTextFocusPerformNothing();
    void menusBehindModalPanelsPerformNothing_data();
    void menusBehindModalPanelsPerformNothing();
    void menusOfAModalWindowItselfPerform();
    void submenusAreSearched();
    void makingMenusIsCheap();
};

void tst_MenuItem::titleStaysAsGiven_data()
{
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("shown");
    QTest::newRow("plain") << "Echo"
                           << "Echo";
    QTest::newRow("empty") << ""
                           << "";
    QTest::newRow("ampersand") << "Mix & Match && More"
                               << "Mix && Match &&&& More";
    QTest::newRow("colon") << "Acme: Delay"
                           << "Acme: Delay";
    QTest::newRow("emoji") << QString::fromUtf8("Reverb 🎛️") << QString::fromUtf8("Reverb 🎛️");
    QTest::newRow("right to left") << QString::fromUtf8("מסנן: הד") << QString::fromUtf8("מסנן: הד");
    QTest::newRow("tab and line break") << "a\tb\nc"
                                        << "a b c";
    QTest::newRow("1000 characters") << QString(1000, 'x') << QString(60, 'x') + QChar(0x2026) + QString(60, 'x');
}

void tst_MenuItem::titleStaysAsGiven()
{
    QFETCH(QString, title);
    QMenu menu;
    const MenuItem *const item = addMenuItem(menu, title);
    QCOMPARE(item->title(), title);
    QCOMPARE(platform::titleOf(*item), title);
    QTEST(item->text(), "shown");
    MenuItem renamed("before");
    renamed.setTitle(title);
    QTEST(renamed.text(), "shown");
}

void tst_MenuItem::shortenedTitleKeepsCharactersWhole()
{
    for (int offset : {0, 1}) {
        const QString title = QString(offset, 'x') + QString::fromUtf8("🎛").repeated(200);
        const QString shown = platform::shownTitle(title);
        QCOMPARE(QString::fromUtf8(shown.toUtf8()), shown); // a lone surrogate would come back as U+FFFD
        QVERIFY(shown.size() < 130);
    }
}

void tst_MenuItem::titleOfAPlainActionIsWithoutMnemonic()
{
    QAction action("&Save && Close\tCtrl+S");
    QCOMPARE(platform::titleOf(action), QString("Save & Close"));
}

void tst_MenuItem::choosingSendsTheActionWithTheItem()
{
    Target target;
    QMenu menu;
    MenuItem *const item = addMenuItem(menu, "Echo", "choose:");
    item->setTarget(&target);
    item->trigger();
    QCOMPARE(target.senders, QObjectList{item});
}

void tst_MenuItem::actionWithoutColonGetsNoSender()
{
    Target target;
    MenuItem item("Echo");
    item.setAction("plain");
    item.setTarget(&target);
    item.trigger();
    QCOMPARE(target.plains, 1);
}

void tst_MenuItem::receiverIsFoundWhenChosen()
{
    Target first, second;
    MenuItem item("Echo");
    item.setAction("choose:");
    platform::setDelegate(qApp, &first);
    item.trigger();
    platform::setDelegate(qApp, &second);
    item.trigger();
    QCOMPARE(first.senders.size(), 1);
    QCOMPARE(second.senders.size(), 1);
}

void tst_MenuItem::targetThatWentReceivesNothing()
{
    Target other;
    platform::setDelegate(qApp, &other);
    MenuItem item("Echo");
    item.setAction("choose:");
    {
        Target target;
        item.setTarget(&target);
        QVERIFY(item.validate());
    }
    QVERIFY(!item.validate());
    item.trigger();
    QVERIFY(other.senders.isEmpty());
}

void tst_MenuItem::clearedActionSendsNothing()
{
    Target target;
    MenuItem item("Echo");
    item.setTarget(&target);
    item.setAction("choose:");
    item.setAction({});
    item.trigger();
    QVERIFY(target.senders.isEmpty());
}

void tst_MenuItem::changedActionSendsOnce()
{
    Target target;
    MenuItem item("Echo");
    item.setTarget(&target);
    item.setAction("plain");
    item.setAction("choose:");
    item.trigger();
    QCOMPARE(target.senders.size(), 1);
    QCOMPARE(target.plains, 0);
}

/// Deletes whatever sent to it.
class Deleter : public QObject
{
    Q_OBJECT

public:
    Q_INVOKABLE void choose(QObject *sender) { delete sender; }
};

void tst_MenuItem::itemMayBeDeletedByItsAction()
{
    Deleter deleter;
    QMenu menu;
    QPointer<MenuItem> item = addMenuItem(menu, "Echo", "choose:");
    item->setTarget(&deleter);
    item->trigger();
    QVERIFY(!item);
    QVERIFY(menu.isEmpty());
}

void tst_MenuItem::openingAMenuValidatesItsItems()
{
    Target target;
    target.refused = "Off";
    QMenu menu;
    MenuItem *const on = addMenuItem(menu, "On", "choose:");
    MenuItem *const off = addMenuItem(menu, "Off", "choose:");
    MenuItem *const nobodys = addMenuItem(menu, "Nobody's", "noSuchThing:");
    MenuItem *const inert = addMenuItem(menu, "No plug-ins found");
    inert->setEnabled(false);
    on->setTarget(&target);
    off->setTarget(&target);
    menu.popup({});
    QVERIFY(on->isEnabled());
    QVERIFY(!off->isEnabled());
    QVERIFY(!nobodys->isEnabled());
    QVERIFY(!inert->isEnabled());
    menu.close();
    target.refused.clear();
    menu.popup({});
    QVERIFY(off->isEnabled());
}

void tst_MenuItem::recordsTravelInItems()
{
    const auto record = std::make_shared<int>(5);
    MenuItem item("Echo");
    item.setRepresentedObject(QVariant::fromValue(record));
    item.setTag(1LL << 40);
    QCOMPARE(item.representedObject().value<std::shared_ptr<int>>(), record);
    QCOMPARE(item.tag(), 1LL << 40);
}

void tst_MenuItem::keyEquivalentIsShownButNotRegistered_data()
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

void tst_MenuItem::keyEquivalentIsShownButNotRegistered()
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

void tst_MenuItem::keyEquivalentMatches_data()
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

void tst_MenuItem::keyEquivalentMatches()
{
    QFETCH(QString, character);
    QFETCH(quint32, mask);
    QFETCH(int, key);
    QFETCH(Qt::KeyboardModifiers, modifiers);
    MenuItem item("Save");
    item.setKeyEquivalent(character, mask);
    QTEST(item.matches(QKeyEvent(QEvent::KeyPress, key, modifiers)), "matches");
}

void tst_MenuItem::firstEnabledItemPerformsAKey()
{
    Target target;
    target.refused = "First";
    QMenu menu;
    for (const char *title : {"First", "Second", "Third"})
        addMenuItem(menu, title, "choose:", "s")->setTarget(&target);
    const QKeyEvent press(QEvent::KeyPress, Qt::Key_S, Qt::ControlModifier);
    QVERIFY(platform::performKeyEquivalent(menu, press));
    QCOMPARE(target.senders, QObjectList{menu.actions().at(1)});
    QVERIFY(!platform::performKeyEquivalent(menu, QKeyEvent(QEvent::KeyPress, Qt::Key_S, Qt::NoModifier)));
}

void tst_MenuItem::repeatsAndTextFocusPerformNothing()
{
    Target target;
    QMainWindow window;
    auto *const field = new QLineEdit;
    window.setCentralWidget(field);
    addMenuItem(*window.menuBar()->addMenu("File"), "Save", "choose:", "s")->setTarget(&target);
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    const QKeyEvent press(QEvent::KeyPress, Qt::Key_S, Qt::ControlModifier);
    field->setFocus();
    QVERIFY(!platform::performKeyEquivalent(press));
    field->clearFocus();
    QVERIFY(!platform::performKeyEquivalent(QKeyEvent(QEvent::KeyPress, Qt::Key_S, Qt::ControlModifier, {}, true)));
    QVERIFY(target.senders.isEmpty());
    QVERIFY(platform::performKeyEquivalent(press));
    QCOMPARE(target.senders.size(), 1);
}

void tst_MenuItem::menusBehindModalPanelsPerformNothing_data()
{
    QTest::addColumn<Qt::WindowModality>("modality");
    QTest::addColumn<bool>("isOnTheWindow");
    QTest::addColumn<bool>("performs");
    QTest::newRow("alert") << Qt::ApplicationModal << false << false;
    QTest::newRow("sheet") << Qt::WindowModal << true << false;
    QTest::newRow("sheet of another window") << Qt::WindowModal << false << true;
    QTest::newRow("panel") << Qt::NonModal << true << true;
}

void tst_MenuItem::menusBehindModalPanelsPerformNothing()
{
    QFETCH(const Qt::WindowModality, modality);
    QFETCH(const bool, isOnTheWindow);
    Target target;
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

void tst_MenuItem::menusOfAModalWindowItselfPerform()
{
    Target target;
    QMainWindow window;
    addMenuItem(*window.menuBar()->addMenu("File"), "Save", "choose:", "s")->setTarget(&target);
    window.setWindowModality(Qt::ApplicationModal);
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    QVERIFY(platform::performKeyEquivalent(QKeyEvent(QEvent::KeyPress, Qt::Key_S, Qt::ControlModifier)));
}

void tst_MenuItem::submenusAreSearched()
{
    Target target;
    QMenu menu;
    QMenu *const submenu = platform::addSubmenu(menu, "A & B");
    addMenuItem(*submenu, "Deep", "choose:", "d")->setTarget(&target);
    QCOMPARE(platform::titleOf(*menu.actions().first()), QString("A & B"));
    QVERIFY(platform::performKeyEquivalent(menu, QKeyEvent(QEvent::KeyPress, Qt::Key_D, Qt::ControlModifier)));
    QCOMPARE(target.senders.size(), 1);
    menu.actions().first()->setEnabled(false);
    QVERIFY(!platform::performKeyEquivalent(menu, QKeyEvent(QEvent::KeyPress, Qt::Key_D, Qt::ControlModifier)));
}

namespace
{
constexpr int manyItems = 10'000;

template <class Add>
qint64 fastestOfFive(Add add)
{
    qint64 best = std::numeric_limits<qint64>::max();
    for (int run = 0; run < 5; ++run) {
        QMenu menu;
        QElapsedTimer timer;
        timer.start();
        for (int i = 0; i < manyItems; ++i)
            add(menu, QString::number(i));
        best = std::min(best, timer.nsecsElapsed());
    }
    return best;
}
} // namespace

/// The benchmark holds the exact ratio; this fails when an item begins to cost several times a plain one.
void tst_MenuItem::makingMenusIsCheap()
{
    Target target;
    const qint64 plain =
        fastestOfFive([](QMenu &menu, const QString &title) { menu.addAction(new QAction(title, &menu)); });
    const qint64 ours = fastestOfFive([&](QMenu &menu, const QString &title) {
        MenuItem *const item = addMenuItem(menu, title, "choose:");
        item->setTarget(&target);
        item->setRepresentedObject(5);
    });
    qInfo("plain %lld us, ours %lld us", plain / 1000, ours / 1000);
    QVERIFY2(ours < 3 * plain, qPrintable(QString("%1 against %2 ns").arg(ours).arg(plain)));
}

QTEST_MAIN(tst_MenuItem)
#include "tst_MenuItem.moc"

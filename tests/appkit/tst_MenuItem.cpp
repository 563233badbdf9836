#include "MenuTarget.h"

#include <QWPlatform/appkit/ResponderChain.h>
#include <QWPlatform/appkit/menus/ShownTitle.h>

#include <QApplication>
#include <QMenu>
#include <QTest>

using platform::addMenuItem;
using platform::MenuItem;

/// Titles, actions and records of menu items.
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
    MenuTarget target;
    QMenu menu;
    MenuItem *const item = addMenuItem(menu, "Echo", "choose:");
    item->setTarget(&target);
    item->trigger();
    QCOMPARE(target.senders, QObjectList{item});
}

void tst_MenuItem::actionWithoutColonGetsNoSender()
{
    MenuTarget target;
    MenuItem item("Echo");
    item.setAction("plain");
    item.setTarget(&target);
    item.trigger();
    QCOMPARE(target.plains, 1);
}

void tst_MenuItem::receiverIsFoundWhenChosen()
{
    MenuTarget first, second;
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
    MenuTarget other;
    platform::setDelegate(qApp, &other);
    MenuItem item("Echo");
    item.setAction("choose:");
    {
        MenuTarget target;
        item.setTarget(&target);
        QVERIFY(item.validate());
    }
    QVERIFY(!item.validate());
    item.trigger();
    QVERIFY(other.senders.isEmpty());
}

void tst_MenuItem::clearedActionSendsNothing()
{
    MenuTarget target;
    MenuItem item("Echo");
    item.setTarget(&target);
    item.setAction("choose:");
    item.setAction({});
    item.trigger();
    QVERIFY(target.senders.isEmpty());
}

void tst_MenuItem::changedActionSendsOnce()
{
    MenuTarget target;
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
    MenuTarget target;
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

QTEST_MAIN(tst_MenuItem)
#include "tst_MenuItem.moc"

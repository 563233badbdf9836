#include "ShortcutHost.h"
#include "fakes/QWTestMain.h"

#include <QWPlatform/appkit/MenuItem.h>

#include <QMenuBar>

namespace
{
std::shared_ptr<QWShortcutGroup> transport()
{
    return QWShortcutGroup::shortcutGroupWithState(
        groupState("Transport", {shortcutState("Play", "play:", 'p', 0, 1),
                                 shortcutState("Play slow", "play:", 'p', 0, 2), shortcutState("Stop", "stop:", 's')}));
}
} // namespace

class tst_QWShortcutGroup : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void stateComesBack();
    void stateTakesOnlyWhatIsPresent();
    void membersOfAnotherTypeAreLeftOut();
    void membersBelongToTheGroup();
    void copyHasShortcutsOfItsOwn();
    void sharedShortcutsStayWithTheirGroup();
    void enabledHasThreeStates();
    void firstMatchIsFound();
    void onlyMenuGroupsRefreshTheirMenu();
    void membersMayOutliveTheGroup();
};

void tst_QWShortcutGroup::stateComesBack()
{
    const auto group = transport();
    QCOMPARE(group->state().value("name"), QVariant("Transport"));
    QCOMPARE(group->state().value("isMenu"), QVariant(false));
    QCOMPARE(group->state().value("shortcuts").toList().size(), 3);
    QCOMPARE(QWShortcutGroup::shortcutGroupWithState(group->state())->state(), group->state());
}

void tst_QWShortcutGroup::stateTakesOnlyWhatIsPresent()
{
    const auto group = transport();
    const auto members = group->shortcuts();
    group->setState({{"isMenu", true}});
    QVERIFY(group->isMenu());
    QCOMPARE(group->name(), QString("Transport"));
    QCOMPARE(group->shortcuts(), members);
    group->setState({{"shortcuts", QVariantList{}}});
    QVERIFY(group->shortcuts().empty());
    group->setState({{"shortcuts", "no list"}});
    QVERIFY(group->shortcuts().empty());
}

void tst_QWShortcutGroup::membersOfAnotherTypeAreLeftOut()
{
    QWShortcutGroup group;
    group.setState(groupState("Odd", {1, "two", QVariantList{3}, shortcutState("Play", "play:", 'p'), QVariant()}));
    QCOMPARE(group.shortcuts().size(), std::size_t(1));
}

void tst_QWShortcutGroup::membersBelongToTheGroup()
{
    const auto group = transport();
    for (const auto &shortcut : group->shortcuts())
        QCOMPARE(shortcut->group(), group.get());
}

void tst_QWShortcutGroup::copyHasShortcutsOfItsOwn()
{
    const auto group = transport();
    const auto copy = group->copy();
    QCOMPARE(copy->state(), group->state());
    for (std::size_t i = 0; i < 3; ++i)
        QVERIFY(copy->shortcuts()[i] != group->shortcuts()[i]);
    copy->shortcuts()[0]->key().clear();
    QVERIFY(!group->shortcuts()[0]->key().isClear());
}

void tst_QWShortcutGroup::sharedShortcutsStayWithTheirGroup()
{
    const auto group = transport();
    {
        QWShortcutGroup results;
        results.setShortcuts({group->shortcuts()[1]});
        QCOMPARE(results.shortcuts()[0], group->shortcuts()[1]);
        QCOMPARE(results.shortcuts()[0]->group(), group.get());
    }
    QCOMPARE(group->shortcuts()[1]->group(), group.get());
    group->setShortcuts({group->shortcuts()[1], group->shortcuts()[0]});
    QCOMPARE(group->shortcuts()[1]->group(), group.get());
}

void tst_QWShortcutGroup::enabledHasThreeStates()
{
    const auto group = transport();
    QCOMPARE(group->enabled(), 1);
    group->shortcuts()[1]->setEnabled(false);
    QCOMPARE(group->enabled(), -1);
    group->setEnabled(false);
    QCOMPARE(group->enabled(), 0);
    group->setEnabled(true);
    QCOMPARE(group->enabled(), 1);
    QCOMPARE(QWShortcutGroup().enabled(), -1);
}

void tst_QWShortcutGroup::firstMatchIsFound()
{
    const auto group = transport();
    QCOMPARE(group->shortcutWithKey({'p', 0}), group->shortcuts()[0]);
    QCOMPARE(group->shortcutWithActionTag("play:", 2), group->shortcuts()[1]);
    QVERIFY(!group->shortcutWithKey({'p', 0x20000}));
    QVERIFY(!group->shortcutWithActionTag("stop:", 1));
    QVERIFY(!group->shortcutWithActionTag("stop", 0));
}

void tst_QWShortcutGroup::onlyMenuGroupsRefreshTheirMenu()
{
    QMainWindow window;
    const auto *item = platform::addMenuItem(*window.menuBar()->addMenu("Transport"), "Play");
    window.show();
    const auto group = transport();
    group->refreshMenu();
    QCOMPARE(item->keyEquivalent(), QString());
    group->setIsMenu(true);
    group->refreshMenu();
    QCOMPARE(item->keyEquivalent(), QString("p"));
}

void tst_QWShortcutGroup::membersMayOutliveTheGroup()
{
    auto group = transport();
    const auto shortcut = group->shortcuts()[0];
    group.reset();
    QVERIFY(!shortcut->group());
    shortcut->setEnabled(false);
}

QW_TEST_MAIN(tst_QWShortcutGroup)
#include "tst_QWShortcutGroup.moc"

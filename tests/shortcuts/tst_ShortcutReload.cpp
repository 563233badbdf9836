#include "SampleShortcuts.h"
#include "fakes/QWTestMain.h"

#include <QWPlatform/appkit/MenuItem.h>

#include <QMenuBar>

using namespace sample;

/// Current changes on top of the factory definition, and back into their file.
class tst_ShortcutReload : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void storedKeyIsAssigned();
    void onlyTheKeyIsTakenFromTheFile();
    void storedKeyTakesItFromAnotherAction();
    void sameActionWithAnotherTagKeepsTheKey();
    void laterEntriesWin();
    void storedClearKeyClears();
    void unknownActionIsPassedOver();
    void reloadPutsKeysOntoMenuItems();
    void menuItemKeepsTheKeyThatWasTakenAway();
    void reloadMakesNewObjects();
    void changesAreThoseOfKeys();
    void enabledAloneIsNoChange();
    void savedChangesComeBack();
    void addingAndRemovingFromTheFactoryIsSurvived();
    void representedObjectThatNoFileHoldsIsLeftOut();
};

void tst_ShortcutReload::storedKeyIsAssigned()
{
    const ShortcutSystem system(factory);
    system.setCurrent({shortcutState("Play", "play:", 'k', command, 2)});
    const auto &registry = loaded();
    QCOMPARE(keyOf(registry, "play:", 2), QWShortcutKey('k', command));
    QCOMPARE(keyOf(registry, "play:", 1), QWShortcutKey('p', 0));
}

void tst_ShortcutReload::onlyTheKeyIsTakenFromTheFile()
{
    const ShortcutSystem system(factory);
    QVariantMap entry = shortcutState("Renamed", "play:", 'k', 0, 1);
    entry["enabled"] = false;
    entry["prohibitRepeats"] = true;
    entry["representedObject"] = "x";
    system.setCurrent({entry});
    const auto shortcut = loaded().shortcutWithActionTag("play:", 1);
    QCOMPARE(shortcut->state(), QWShortcut::shortcutWithState(shortcutState("Play", "play:", 'k', 0, 1))->state());
}

void tst_ShortcutReload::storedKeyTakesItFromAnotherAction()
{
    const ShortcutSystem system(factory);
    system.setCurrent({shortcutState("Play", "play:", 's', 0, 1)});
    const auto &registry = loaded();
    QCOMPARE(keyOf(registry, "play:", 1), QWShortcutKey('s', 0));
    QVERIFY(keyOf(registry, "stop:").isClear());
}

void tst_ShortcutReload::sameActionWithAnotherTagKeepsTheKey()
{
    const ShortcutSystem system(factory);
    system.setCurrent({shortcutState("Play slow", "play:", 'p', 0, 2)});
    const auto &registry = loaded();
    QCOMPARE(keyOf(registry, "play:", 1), QWShortcutKey('p', 0));
    QCOMPARE(keyOf(registry, "play:", 2), QWShortcutKey('p', 0));
}

void tst_ShortcutReload::laterEntriesWin()
{
    const ShortcutSystem system(factory);
    system.setCurrent({shortcutState("Play", "play:", 'k', 0, 1), shortcutState("Stop", "stop:", 'k')});
    const auto &registry = loaded();
    QVERIFY(keyOf(registry, "play:", 1).isClear());
    QCOMPARE(keyOf(registry, "stop:"), QWShortcutKey('k', 0));
}

void tst_ShortcutReload::storedClearKeyClears()
{
    const ShortcutSystem system(factory);
    system.setCurrent({shortcutState("Play", "play:", 0, 0, 1)});
    QVERIFY(keyOf(loaded(), "play:", 1).isClear());
}

void tst_ShortcutReload::unknownActionIsPassedOver()
{
    const ShortcutSystem system(factory);
    system.setCurrent({shortcutState("Gone", "gone:", 'p'), shortcutState("Play", "play:", 'k', 0, 99)});
    const auto &registry = loaded();
    QVERIFY(keyOf(registry, "play:", 1).isClear()); // its key went to a shortcut that is no longer there
    QVERIFY(!registry.shortcutWithKey(QWShortcutKey('k', 0)));
}

void tst_ShortcutReload::reloadPutsKeysOntoMenuItems()
{
    QMainWindow window;
    QMenu *const menu = window.menuBar()->addMenu("&File");
    const auto *const save = platform::addMenuItem(*menu, "Save");
    window.show();
    const ShortcutSystem system(factory);
    auto &registry = loaded();
    QCOMPARE(save->keyEquivalent(), QString("s"));
    QCOMPARE(save->action(), platform::Selector("save:"));
    system.setCurrent({shortcutState("Save", "save:", 'w', command)});
    registry.loadCurrentShortcuts();
    QCOMPARE(save->keyEquivalent(), QString("w"));
}

void tst_ShortcutReload::menuItemKeepsTheKeyThatWasTakenAway()
{
    QMainWindow window;
    const auto *const save = platform::addMenuItem(*window.menuBar()->addMenu("&File"), "Save");
    window.show();
    const ShortcutSystem system(factory);
    system.setCurrent({shortcutState("Play", "play:", 's', command, 1)});
    QVERIFY(keyOf(loaded(), "save:").isClear());
    QCOMPARE(save->keyEquivalent(), QString("s"));
}

void tst_ShortcutReload::reloadMakesNewObjects()
{
    const ShortcutSystem system(factory);
    auto &registry = loaded();
    const auto before = registry.groups()[0]->shortcuts()[0];
    registry.loadCurrentShortcuts();
    QVERIFY(registry.groups()[0]->shortcuts()[0] != before);
    before->key().setCharacter('q'); // no longer any of the registry's
    QVERIFY(!registry.shortcutWithKey(QWShortcutKey('q', 0)));
    QVERIFY(registry.shortcutWithKey(QWShortcutKey('p', 0)));
}

void tst_ShortcutReload::changesAreThoseOfKeys()
{
    const ShortcutSystem system(factory);
    const auto &registry = loaded();
    registry.shortcutWithActionTag("stop:", 0)->clearKey();
    registry.shortcutWithActionTag("play:", 1)->setKey({'x', shift});
    const QVariantList changes = registry.changedShortcuts();
    QCOMPARE(changes.size(), 2); // in factory order
    QCOMPARE(changes[0].toMap(), registry.shortcutWithActionTag("play:", 1)->state());
    QCOMPARE(changes[1].toMap().value("name"), QVariant("Stöp"));
    QCOMPARE(changes[1].toMap().value("character"), QVariant(0LL));
}

void tst_ShortcutReload::enabledAloneIsNoChange()
{
    const ShortcutSystem system(factory);
    auto &registry = loaded();
    registry.groups()[0]->setEnabled(false);
    QVERIFY(registry.changedShortcuts().isEmpty());
    registry.saveToDefaults();
    QCOMPARE(system.current(), QVariantList());
}

void tst_ShortcutReload::savedChangesComeBack()
{
    const ShortcutSystem system(factory);
    auto &registry = loaded();
    registry.shortcutWithActionTag("stop:", 0)->setKey({0xf704, command});
    registry.saveToDefaults();
    QCOMPARE(system.current().size(), 1);
    registry.loadCurrentShortcuts();
    QCOMPARE(keyOf(registry, "stop:"), QWShortcutKey(0xf704, command));
}

void tst_ShortcutReload::addingAndRemovingFromTheFactoryIsSurvived()
{
    const ShortcutSystem system(factory);
    const auto &registry = loaded();
    system.setFactory({groupState("New", {shortcutState("New", "new:", 'n')})});
    QVERIFY(registry.changedShortcuts().isEmpty()); // not loaded yet, so without a current shortcut
    system.setFactory({});
    QVERIFY(registry.changedShortcuts().isEmpty());
}

void tst_ShortcutReload::representedObjectThatNoFileHoldsIsLeftOut()
{
    const ShortcutSystem system(factory);
    auto &registry = loaded();
    const auto stop = registry.shortcutWithActionTag("stop:", 0);
    stop->setRepresentedObject(QVariant::fromValue<QObject *>(this));
    stop->setKey({'x', 0});
    registry.saveToDefaults();
    QCOMPARE(system.current().size(), 1);
    QVERIFY(!system.current().first().toMap().contains("representedObject"));
}

QW_TEST_MAIN(tst_ShortcutReload)
#include "tst_ShortcutReload.moc"

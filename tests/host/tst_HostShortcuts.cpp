#include "HostUnderTest.h"

#include <QWPlatform/appkit/MenuItem.h>
#include <QWPlatform/appkit/ResponderChain.h>

#include <QMenuBar>

using platform::MenuItem;

/// The shortcuts that the host ships, against its menus, its receivers and its presets.
class tst_HostShortcuts : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void setIsLargeAndGrouped();
    void keysAreUniqueAndFree();
    void identitiesAreUnique();
    void everyActionIsAnswered();
    void menuShortcutsHaveTheirItems();
    void menusHaveNoDeadItems();
    void undoKeepsItsTitleForTheShortcut();
    void nothingIsEditedWithoutASound();
    void presetsComeWithTheBundle();
    void presetsChangeShortcutsThatThereAre_data();
    void presetsChangeShortcutsThatThereAre();

private:
    static HostUnderTest &_host() { return HostUnderTest::host(); }
    static std::vector<std::shared_ptr<QWShortcut>> _all();
};

std::vector<std::shared_ptr<QWShortcut>> tst_HostShortcuts::_all()
{
    std::vector<std::shared_ptr<QWShortcut>> all;
    for (const auto &group : _host().registry().groups())
        all.insert(all.end(), group->shortcuts().begin(), group->shortcuts().end());
    return all;
}

static QMenu *topLevelMenu(QMenuBar &bar, const QString &title)
{
    for (const QAction *item : bar.actions()) {
        if (platform::titleOf(*item) == title)
            return item->menu();
    }
    return nullptr;
}

static MenuItem *itemAt(QMenu *menu, QStringList path)
{
    const QString title = path.takeFirst();
    for (QAction *item : menu->actions()) {
        if (platform::titleOf(*item) == title)
            return path.isEmpty() ? qobject_cast<MenuItem *>(item) : itemAt(item->menu(), path);
    }
    return nullptr;
}

void tst_HostShortcuts::setIsLargeAndGrouped()
{
    const auto &groups = _host().registry().groups();
    QCOMPARE(groups.size(), size_t(6));
    QCOMPARE(std::ranges::count_if(groups, [](const auto &group) { return group->isMenu(); }), 4);
    QVERIFY(_all().size() >= 40);
    for (const auto &shortcut : _all())
        QVERIFY2(shortcut->enabled(), qPrintable(shortcut->name()));
    for (const auto &group : groups) {
        const auto hasSubmenu = [](const auto &shortcut) { return shortcut->name().contains('>'); };
        QVERIFY(group->isMenu() || std::ranges::none_of(group->shortcuts(), hasSubmenu));
    }
}

void tst_HostShortcuts::keysAreUniqueAndFree()
{
    for (const auto &shortcut : _all()) {
        if (shortcut->key().isClear())
            continue;
        QCOMPARE(_host().registry().shortcutWithKey(shortcut->key())->name(), shortcut->name());
        QVERIFY2(!shortcut->key().isReserved(), qPrintable(shortcut->name()));
    }
}

void tst_HostShortcuts::identitiesAreUnique()
{
    for (const auto &shortcut : _all()) {
        const auto first = _host().registry().shortcutWithActionTag(shortcut->action(), shortcut->tag());
        QCOMPARE(first->name(), shortcut->name());
    }
}

void tst_HostShortcuts::everyActionIsAnswered()
{
    for (const auto &shortcut : _all())
        QVERIFY2(platform::targetForAction(shortcut->action()), qPrintable(shortcut->name()));
}

void tst_HostShortcuts::menuShortcutsHaveTheirItems()
{
    for (const auto &shortcut : _all()) {
        if (!shortcut->group()->isMenu())
            continue;
        QMenu *const menu = topLevelMenu(*_host().window().menuBar(), shortcut->group()->name());
        const MenuItem *const item = itemAt(menu, shortcut->name().split('>'));
        QVERIFY2(item, qPrintable(shortcut->name()));
        QCOMPARE(item->action(), shortcut->action());
        QCOMPARE(item->tag(), qlonglong(shortcut->tag()));
        QCOMPARE(item->representedObject(), shortcut->representedObject());
        QCOMPARE(item->keyEquivalent().isEmpty(), shortcut->key().isClear());
    }
}

static void collectDeadItems(const QMenu &menu, QStringList &dead)
{
    for (const QAction *action : menu.actions()) {
        const auto *const item = qobject_cast<const MenuItem *>(action);
        if (action->menu())
            collectDeadItems(*action->menu(), dead);
        else if (item && (item->action().isNull() || !platform::targetForAction(item->action(), item->target())))
            dead.append(item->title());
    }
}

void tst_HostShortcuts::menusHaveNoDeadItems()
{
    QStringList dead;
    for (const char *title : {"File", "Edit", "View", "Transport", "Help"}) // the others say that there are no plug-ins
        collectDeadItems(*topLevelMenu(*_host().window().menuBar(), title), dead);
    QCOMPARE(dead.join(", "), QString());
}

void tst_HostShortcuts::undoKeepsItsTitleForTheShortcut()
{
    _host().openSound();
    QMenu *const edit = topLevelMenu(*_host().window().menuBar(), "Edit");
    const MenuItem *const undo = itemAt(edit, {"Undo"});
    Q_EMIT edit->aboutToShow();
    QCOMPARE(undo->title(), QString("Undo Sample"));
    Q_EMIT edit->aboutToHide();
    QCOMPARE(undo->title(), QString("Undo"));
    _host().shortcut("Undo")->setKey({'y', 0x100000});
    QCOMPARE(undo->keyEquivalent(), QString("y"));
    _host().registry().loadCurrentShortcuts();
    QCOMPARE(undo->keyEquivalent(), QString("z"));
}

void tst_HostShortcuts::nothingIsEditedWithoutASound()
{
    while (_host().document().canUndo())
        _host().document().undo();
    QVERIFY(_host().document().isEmpty());
    for (const char *name : {"Reverse", "Fade>In", "Level>Louder by 6 dB", "Select All", "Zoom>In", "Undo",
                             "Play or Stop", "Play Selection", "Go to End", "Forward"})
        QVERIFY2(!_host().press(name), name);
    for (const char *name : {"Next Effect", "Show Result"})
        QVERIFY2(_host().press(name), name); // of no menu: taken, though nothing comes of it
    QVERIFY(_host().document().isEmpty());
}

void tst_HostShortcuts::presetsComeWithTheBundle()
{
    QStringList presets = _host().registry().presets();
    presets.sort();
    QCOMPARE(presets, (QStringList{"Left Hand", "Space Bar Plays"}));
}

void tst_HostShortcuts::presetsChangeShortcutsThatThereAre_data()
{
    QTest::addColumn<int>("changes");
    QTest::newRow("Left Hand") << 14;
    QTest::newRow("Space Bar Plays") << 3;
}

void tst_HostShortcuts::presetsChangeShortcutsThatThereAre()
{
    QFETCH(int, changes);
    MenuItem item(QTest::currentDataTag());
    _host().registry().loadPreset(&item);
    QCOMPARE(_host().registry().changedShortcuts().size(), changes);
    keysAreUniqueAndFree();
    MenuItem none("None"); // as good as a reset
    _host().registry().loadPreset(&none);
    QVERIFY(_host().registry().changedShortcuts().isEmpty());
}

QW_HOST_TEST_MAIN(tst_HostShortcuts)
#include "tst_HostShortcuts.moc"

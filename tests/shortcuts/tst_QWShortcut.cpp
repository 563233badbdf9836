#include "ShortcutHost.h"
#include "fakes/QWTestMain.h"

#include <QWPlatform/appkit/MenuItem.h>
#include <QWPlatform/appkit/ResponderChain.h>

#include <QKeyEvent>
#include <QLabel>
#include <QMenuBar>
#include <QSignalSpy>

using platform::addMenuItem;
using platform::MenuItem;

namespace
{
constexpr quint32 command = 0x100000;
constexpr quint32 shift = 0x20000;

const QKeyEvent press(QEvent::KeyPress, Qt::Key_A, Qt::NoModifier, "a");
const QKeyEvent repeat(QEvent::KeyPress, Qt::Key_A, Qt::NoModifier, "a", true);

/// Takes an action and does not say when.
class SilentReceiver : public QObject
{
    Q_OBJECT

public:
    Q_INVOKABLE void save(QObject *) { ++saves; }

    int saves = 0;
};
} // namespace

/// A host with menus File (Save; Recent > Clear; Recent > Deeper > Item) and Edit (Save, Item).
class tst_QWShortcut : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void newOneIsEmpty();
    void stateComesBack();
    void stateTakesOnlyWhatIsPresent();
    void absentRepresentedObjectStaysAbsent();
    void wrongTypesHurtNothing();
    void putsItselfOntoItsMenuItem();
    void firstTopLevelMenuWithThePathCounts();
    void pathLeadsIntoSubmenus();
    void pathThatLeadsNowhereChangesNothing_data();
    void pathThatLeadsNowhereChangesNothing();
    void disabledItemKeepsActionAndTag();
    void changesRefreshTheItem();
    void keyChangedByItselfLeavesTheItem();
    void outsideMenuGroupsNoItemChanges();
    void sendsItsActionWithItselfAsSender();
    void disabledDoesNotFire();
    void repeatsCanBeProhibited();
    void nobodyTakingTheActionIsStillHandled();
    void menuShortcutIsValidatedFirst();
    void menuShortcutIsValidatedByItsAction();
    void menuShortcutOfAReceiverWithoutASayFires();
    void menuShortcutWithoutReceiverDoesNotFire();
    void menuTitleLightsUpWithoutOpening();
    void menuIsAsBeforeAfterBlinking();
    void groupMayGoWhileActing();

private:
    MenuItem *_item(const QString &menu, const QString &title) const;
    std::shared_ptr<QWShortcut> _inMenu(const QString &name, const QString &action = "save:");

    std::unique_ptr<QMainWindow> m_window;
    std::unique_ptr<QWShortcutGroup> m_group;
    QMenu *m_file = nullptr;
    QMenu *m_recent = nullptr;
    QMenu *m_deeper = nullptr;
    QMenu *m_edit = nullptr;
};

void tst_QWShortcut::init()
{
    m_window = std::make_unique<QMainWindow>();
    m_group = std::make_unique<QWShortcutGroup>();
    m_group->setName("File");
    m_group->setIsMenu(true);
    m_file = m_window->menuBar()->addMenu("&File");
    m_edit = m_window->menuBar()->addMenu("&Edit");
    m_file->addSeparator();
    addMenuItem(*m_file, "Save");
    m_recent = platform::addSubmenu(*m_file, "Recent");
    addMenuItem(*m_recent, "Clear");
    m_deeper = platform::addSubmenu(*m_recent, "Deeper");
    addMenuItem(*m_deeper, "Item");
    addMenuItem(*m_edit, "Save");
    addMenuItem(*m_edit, "Item");
    m_window->setCentralWidget(new QLabel("host"));
    m_window->show();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
}

void tst_QWShortcut::cleanup()
{
    m_group.reset();
    m_window.reset();
}

MenuItem *tst_QWShortcut::_item(const QString &menu, const QString &title) const
{
    const QMenu *const where = menu == "File"     ? m_file
                               : menu == "Edit"   ? m_edit
                               : menu == "Recent" ? m_recent
                                                  : m_deeper;
    for (QAction *const action : where->actions()) {
        if (platform::titleOf(*action) == title && !action->isSeparator())
            return qobject_cast<MenuItem *>(action);
    }
    return nullptr;
}

std::shared_ptr<QWShortcut> tst_QWShortcut::_inMenu(const QString &name, const QString &action)
{
    auto shortcut = QWShortcut::shortcutWithState(shortcutState(name, action, 's', command, 7));
    shortcut->setGroup(m_group.get());
    auto members = m_group->shortcuts();
    members.push_back(shortcut);
    m_group->setShortcuts(members);
    return shortcut;
}

void tst_QWShortcut::newOneIsEmpty()
{
    const QWShortcut shortcut;
    QVERIFY(shortcut.key().isClear());
    QVERIFY(!shortcut.enabled() && !shortcut.prohibitRepeats() && !shortcut.group());
    QCOMPARE(shortcut.tag(), 0);
    QVERIFY(!shortcut.representedObject().isValid());
    QVERIFY(shortcut.action().isNull());
}

void tst_QWShortcut::stateComesBack()
{
    QVariantMap state = shortcutState("Recent>Clear", "clear:", 'k', command | shift, -3);
    state["prohibitRepeats"] = true;
    state["enabled"] = false;
    state["representedObject"] = QVariantMap{{"speed", 1.5}};
    const auto shortcut = QWShortcut::shortcutWithState(state);
    QCOMPARE(shortcut->name(), QString("Recent>Clear"));
    QCOMPARE(shortcut->action(), platform::Selector("clear:"));
    QCOMPARE(shortcut->tag(), -3);
    QCOMPARE(shortcut->key(), QWShortcutKey('k', command | shift));
    QCOMPARE(shortcut->state(), state);
}

void tst_QWShortcut::stateTakesOnlyWhatIsPresent()
{
    const auto shortcut = QWShortcut::shortcutWithState(shortcutState("Play", "play:", 'p', command, 2));
    const QVariantMap before = shortcut->state();
    shortcut->setState({});
    QCOMPARE(shortcut->state(), before);
    shortcut->setState({{"tag", 5}});
    QCOMPARE(shortcut->tag(), 5);
    QCOMPARE(shortcut->name(), QString("Play"));
    QVERIFY(shortcut->enabled());
}

void tst_QWShortcut::absentRepresentedObjectStaysAbsent()
{
    const auto shortcut = QWShortcut::shortcutWithState(shortcutState("Play", "play:", 'p'));
    QVERIFY(!shortcut->state().contains("representedObject"));
}

void tst_QWShortcut::wrongTypesHurtNothing()
{
    const auto shortcut = QWShortcut::shortcutWithState({{"name", QVariantList{1}},
                                                         {"action", QVariantMap{{"a", 1}}},
                                                         {"tag", "12 strings"},
                                                         {"enabled", "1"},
                                                         {"prohibitRepeats", QByteArray("x")},
                                                         {"character", QVariantMap()},
                                                         {"modifiers", QDateTime::currentDateTimeUtc()}});
    QCOMPARE(shortcut->name(), QString());
    QVERIFY(shortcut->action().isNull());
    QVERIFY(shortcut->enabled());
    QVERIFY(shortcut->key().isClear());
}

void tst_QWShortcut::putsItselfOntoItsMenuItem()
{
    const auto shortcut = _inMenu("Save");
    shortcut->setRepresentedObject("fast");
    shortcut->refreshMenuItem();
    const MenuItem *const item = _item("File", "Save");
    QCOMPARE(item->keyEquivalent(), QString("s"));
    QCOMPARE(item->keyEquivalentModifierMask(), command);
    QCOMPARE(item->action(), platform::Selector("save:"));
    QCOMPARE(item->tag(), 7);
    QCOMPARE(item->representedObject(), QVariant("fast"));
    QCOMPARE(item->text(), QString("Save\tCtrl+S"));
}

void tst_QWShortcut::firstTopLevelMenuWithThePathCounts()
{
    m_group->setName("Edit"); // the group's own menu has no say
    _inMenu("Save")->refreshMenuItem();
    QCOMPARE(_item("File", "Save")->keyEquivalent(), QString("s"));
    QCOMPARE(_item("Edit", "Save")->keyEquivalent(), QString());
    _inMenu("Item")->refreshMenuItem();
    QCOMPARE(_item("Edit", "Item")->keyEquivalent(), QString("s"));
}

void tst_QWShortcut::pathLeadsIntoSubmenus()
{
    _inMenu("Recent>Clear")->refreshMenuItem();
    QCOMPARE(_item("Recent", "Clear")->keyEquivalent(), QString("s"));
    _inMenu("Recent>Deeper>Item")->refreshMenuItem();
    QCOMPARE(_item("Deeper", "Item")->keyEquivalent(), QString("s"));
    QCOMPARE(_item("Edit", "Item")->keyEquivalent(), QString());
}

void tst_QWShortcut::pathThatLeadsNowhereChangesNothing_data()
{
    QTest::addColumn<QString>("path");
    for (const char *path : {"", ">", "save", "Save ", "Save>", ">Save", "File>Save", "Recent>Nothing", "Recent>>Clear",
                             "Recent>Clear>Below", "Recent > Clear"})
        QTest::newRow(path) << path;
}

void tst_QWShortcut::pathThatLeadsNowhereChangesNothing()
{
    QFETCH(QString, path);
    _inMenu(path)->refreshMenuItem();
    for (const QMenu *menu : {m_file, m_recent, m_deeper, m_edit}) {
        for (QAction *const action : menu->actions()) {
            const auto *item = qobject_cast<MenuItem *>(action);
            QVERIFY(!item || (item->keyEquivalent().isEmpty() && item->action().isNull()));
        }
    }
}

void tst_QWShortcut::disabledItemKeepsActionAndTag()
{
    const auto shortcut = _inMenu("Save");
    shortcut->refreshMenuItem();
    shortcut->setEnabled(false);
    const MenuItem *const item = _item("File", "Save");
    QCOMPARE(item->keyEquivalent(), QString());
    QCOMPARE(item->action(), platform::Selector("save:"));
    QCOMPARE(item->tag(), 7);
}

void tst_QWShortcut::changesRefreshTheItem()
{
    const auto shortcut = _inMenu("Save");
    const MenuItem *const item = _item("File", "Save");
    shortcut->setKey(QWShortcutKey('x', shift));
    QCOMPARE(item->keyEquivalent(), QString("x"));
    QCOMPARE(item->keyEquivalentModifierMask(), shift);
    shortcut->clearKey();
    QCOMPARE(item->keyEquivalent(), QString());
    QVERIFY(shortcut->key().isClear());
}

void tst_QWShortcut::keyChangedByItselfLeavesTheItem()
{
    const auto shortcut = _inMenu("Save");
    shortcut->refreshMenuItem();
    shortcut->key().clear();
    QCOMPARE(_item("File", "Save")->keyEquivalent(), QString("s"));
    shortcut->refreshMenuItem();
    QCOMPARE(_item("File", "Save")->keyEquivalent(), QString());
}

void tst_QWShortcut::outsideMenuGroupsNoItemChanges()
{
    const auto shortcut = _inMenu("Save");
    m_group->setIsMenu(false);
    shortcut->refreshMenuItem();
    QWShortcut lonely;
    lonely.setName("Save");
    lonely.setEnabled(true);
    QCOMPARE(_item("File", "Save")->keyEquivalent(), QString());
}

void tst_QWShortcut::sendsItsActionWithItselfAsSender()
{
    ShortcutReceiver receiver;
    const auto shortcut = QWShortcut::shortcutWithState(shortcutState("Play", "play:", 'p', 0, 4));
    shortcut->setRepresentedObject(QVariantList{1, 2});
    QVERIFY(shortcut->perform(press));
    QCOMPARE(receiver.sent, QStringList{"play 4"});
    QCOMPARE(receiver.senders.first().data(), shortcut.get());
    QCOMPARE(receiver.representedObjects.first(), QVariant(QVariantList{1, 2}));
}

void tst_QWShortcut::disabledDoesNotFire()
{
    ShortcutReceiver receiver;
    const auto shortcut = QWShortcut::shortcutWithState(shortcutState("Play", "play:", 'p'));
    shortcut->setEnabled(false);
    QVERIFY(!shortcut->perform(press));
    QCOMPARE(receiver.sent, QStringList());
}

void tst_QWShortcut::repeatsCanBeProhibited()
{
    ShortcutReceiver receiver;
    const auto shortcut = QWShortcut::shortcutWithState(shortcutState("Play", "play:", 'p'));
    QVERIFY(shortcut->perform(repeat));
    shortcut->setProhibitRepeats(true);
    QVERIFY(!shortcut->perform(repeat));
    QVERIFY(shortcut->perform(press));
    QCOMPARE(receiver.sent.size(), 2);
}

void tst_QWShortcut::nobodyTakingTheActionIsStillHandled()
{
    QVERIFY(QWShortcut::shortcutWithState(shortcutState("Play", "nobodyTakesThis:", 'p'))->perform(press));
    QVERIFY(QWShortcut::shortcutWithState(shortcutState("Play", "", 'p'))->perform(press));
}

void tst_QWShortcut::menuShortcutIsValidatedFirst()
{
    ShortcutReceiver receiver;
    const auto shortcut = _inMenu("Save");
    receiver.allows = false;
    QVERIFY(!shortcut->perform(press));
    QCOMPARE(receiver.sent, QStringList());
    receiver.allows = true;
    QVERIFY(shortcut->perform(press));
    QCOMPARE(receiver.sent, QStringList{"save 7"});
    QCOMPARE(receiver.senders.first().data(), shortcut.get());
    QCOMPARE(receiver.validated.size(), 2);
    m_group->setIsMenu(false);
    receiver.allows = false;
    QVERIFY(shortcut->perform(press)); // others are not asked about
}

void tst_QWShortcut::menuShortcutIsValidatedByItsAction()
{
    ShortcutReceiver receiver;
    QVERIFY(_inMenu("Save")->perform(press));
    QCOMPARE(receiver.validated, QStringList{"save: 7"});
}

void tst_QWShortcut::menuShortcutOfAReceiverWithoutASayFires()
{
    SilentReceiver receiver;
    platform::setDelegate(m_window.get(), &receiver);
    QVERIFY(_inMenu("Save")->perform(press));
    QCOMPARE(receiver.saves, 1);
}

void tst_QWShortcut::menuShortcutWithoutReceiverDoesNotFire()
{
    QVERIFY(!_inMenu("Save", "nobodyTakesThis:")->perform(press));
}

void tst_QWShortcut::menuTitleLightsUpWithoutOpening()
{
    ShortcutReceiver receiver;
    QMenuBar &bar = *m_window->menuBar();
    const QRect title = bar.actionGeometry(m_file->menuAction());
    const auto picture = [&](const QRect &part) { return bar.grab(part).toImage(); };
    const QImage dark = picture(title);
    const QImage edit = picture(bar.actionGeometry(m_edit->menuAction()));
    const QSignalSpy opened(m_file, &QMenu::aboutToShow);
    QVERIFY(_inMenu("Save")->perform(press));
    QVERIFY(picture(title) != dark);
    QCOMPARE(picture(bar.actionGeometry(m_edit->menuAction())), edit);
    QTRY_COMPARE(picture(title), dark);
    QCOMPARE(opened.size(), 0);
    QVERIFY(!m_file->isVisible() && !bar.activeAction());
}

void tst_QWShortcut::menuIsAsBeforeAfterBlinking()
{
    ShortcutReceiver receiver;
    const QList<QAction *> before = m_file->actions();
    const auto shortcut = _inMenu("Save");
    QVERIFY(shortcut->perform(press));
    QCOMPARE(m_file->actions(), before);
    m_group->setName("No such menu");
    QVERIFY(shortcut->perform(press));
    QCOMPARE(receiver.sent.size(), 2);
}

void tst_QWShortcut::groupMayGoWhileActing()
{
    ShortcutReceiver receiver;
    const auto shortcut = _inMenu("Save");
    receiver.whileActing = [this] { m_group.reset(); };
    QVERIFY(shortcut->perform(press));
    QVERIFY(!shortcut->group());
}

QW_TEST_MAIN(tst_QWShortcut)
#include "tst_QWShortcut.moc"

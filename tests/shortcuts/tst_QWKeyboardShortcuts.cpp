#include "ShortcutHost.h"
#include "fakes/QWTestMain.h"

#include <QWBase/QWFile.h>
#include <QWPlatform/appkit/MenuItem.h>
#include <QWPlatform/foundation/PropertyList.h>
#include <QWPlatform/foundation/UserDefaults.h>
#include <QWUtilities/shortcuts/ShortcutEditor.h>

#include <QDir>
#include <QFile>
#include <QMenuBar>

#include <csignal>
#include <random>
#include <sys/resource.h>

namespace
{
constexpr quint32 command = 0x100000;
constexpr quint32 shift = 0x20000;

/// Play 1, Play 2, Stop in Transport; Save in the menu File.
const QVariantList factory{
    groupState("Transport", {shortcutState("Play", "play:", 'p', 0, 1),
                             shortcutState("Play slow", "play:", 'p', shift, 2), shortcutState("Stöp", "stop:", 's')}),
    groupState("File", {shortcutState("Save", "save:", 's', command)}, true),
};

QWKeyboardShortcuts &loaded()
{
    QWKeyboardShortcuts::loadShortcuts();
    return QWKeyboardShortcuts::sharedInstance();
}

QWShortcutKey keyOf(const QWKeyboardShortcuts &registry, const char *action, int tag = 0)
{
    const auto shortcut = registry.shortcutWithActionTag(action, tag);
    return shortcut ? shortcut->key() : QWShortcutKey(0xffff, 0);
}

/// While one lives, files cannot grow beyond a size, as on a full disk.
class SmallFiles
{
public:
    explicit SmallFiles(qint64 size)
        : m_handler(std::signal(SIGXFSZ, SIG_IGN))
    {
        getrlimit(RLIMIT_FSIZE, &m_before);
        const rlimit small{rlim_t(size), m_before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &small);
    }
    ~SmallFiles()
    {
        setrlimit(RLIMIT_FSIZE, &m_before);
        std::signal(SIGXFSZ, m_handler);
    }
    SmallFiles(const SmallFiles &) = delete;
    SmallFiles &operator=(const SmallFiles &) = delete;

private:
    void (*m_handler)(int);
    rlimit m_before{};
};

/// An editor without windows.
class FakeEditor : public qw::ShortcutEditor
{
public:
    FakeEditor()
    {
        for (int i = 0; i < 6; ++i)
            platform::addMenuItem(menu, QString("Command %1").arg(i));
    }

    void open() override { ++opened; }
    void toggle() override {}
    QWidget *window() const override { return nullptr; }
    QWidget *setShortcutPanel() const override { return nullptr; }
    void doSetShortcut(const platform::KeyEvent &) override {}
    QString searchString() const override { return search; }
    void clearSearchString() override { search.clear(); }
    void displayResultsDidChange() override { ++reloads; }
    QMenu *presetsMenu() const override { return &menu; }
    QString presetName() const override { return name; }

    QStringList presetTitles() const
    {
        QStringList titles;
        for (const QAction *const item : menu.actions().mid(6))
            titles.append(platform::titleOf(*item));
        titles.sort();
        return titles;
    }

    QAction *preset(const QString &title) const
    {
        for (QAction *const item : menu.actions()) {
            if (platform::titleOf(*item) == title)
                return item;
        }
        return nullptr;
    }

    mutable QMenu menu;
    QString search;
    QString name;
    int opened = 0;
    int reloads = 0;
};

FakeEditor &addEditor(QWKeyboardShortcuts &registry)
{
    auto editor = std::make_unique<FakeEditor>();
    FakeEditor &fake = *editor;
    registry.setEditor(std::move(editor));
    return fake;
}
} // namespace

class tst_QWKeyboardShortcuts : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void firstStartMakesAnEmptyCurrentFile();
    void firstStartCopiesTheFactoryPresets();
    void factoryPresetsAreCopiedOnce();
    void legacyChangesMoveIntoTheCurrentFile_data();
    void legacyChangesMoveIntoTheCurrentFile();
    void legacyChangesThatCannotBeReadStay();
    void legacyChangesDoNotReplaceACurrentFile();
    void oneRegistryPerSystem();
    void factoryGivesGroupsInOrder();
    void missingFactoryGivesNoGroups();
    void lookUpsFindTheFirstInGroupOrder();
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
    void indexAnswersAsAWalkWould();
    void badFilesHurtNothing_data();
    void badFilesHurtNothing();
    void unreadableCurrentFileIsKept();
    void tenThousandEntries();
    void readOnlyFolderHurtsNothing();
    void fullDiskKeepsWhatWasThere();
    void presetsMenuListsThePresets();
    void presetsMenuNeedsAMoreThanTheCurrentFile();
    void presetIsLoaded();
    void unreadablePresetChangesNothing();
    void presetIsSaved();
    void presetNamesAreMadeFileNames_data();
    void presetNamesAreMadeFileNames();
    void replacingAPresetIsAsked();
    void cancelledSaveSheetSavesNothing();
    void resetIsAsked();
    void exportWritesTheChanges();
    void importAddsAPreset_data();
    void importAddsAPreset();
    void importOfNonsenseStopsSilently();
    void importCannotReachTheCurrentFile();
    void searchShowsWhatMatches_data();
    void searchShowsWhatMatches();
    void editorOpensAgainWhenItWasLeftOpen();
};

void tst_QWKeyboardShortcuts::firstStartMakesAnEmptyCurrentFile()
{
    const ShortcutSystem system(factory);
    const auto &registry = loaded();
    QCOMPARE(registry.currentShortcutsPath(), system.path("_current.plist"));
    QCOMPARE(system.readFile(system.path("_current.plist")), platform::PropertyList::toXml(QVariantList()));
    QVERIFY(registry.changedShortcuts().isEmpty());
}

void tst_QWKeyboardShortcuts::firstStartCopiesTheFactoryPresets()
{
    const ShortcutSystem system(factory);
    system.addHostResource("Keyboard Shortcuts/Left Hand.plist", platform::PropertyList::toXml(QVariantList()));
    const auto &registry = loaded();
    QCOMPARE(registry.presets(), QStringList{"Left Hand"});
    QCOMPARE(system.current(), QVariantList());
    QVERIFY(system.readFile(system.path("_current.plist")));
}

void tst_QWKeyboardShortcuts::factoryPresetsAreCopiedOnce()
{
    const ShortcutSystem system(factory);
    system.makeDirectory(system.path("."));
    system.addHostResource("Keyboard Shortcuts/Left Hand.plist", platform::PropertyList::toXml(QVariantList()));
    QCOMPARE(loaded().presets(), QStringList());
}

void tst_QWKeyboardShortcuts::legacyChangesMoveIntoTheCurrentFile_data()
{
    const QVariantList changes{shortcutState("Play", "play:", 'x', 0, 1)};
    QTest::addColumn<QVariant>("stored");
    QTest::newRow("array") << QVariant(changes);
    QTest::newRow("data") << QVariant(platform::PropertyList::toXml(changes));
}

void tst_QWKeyboardShortcuts::legacyChangesMoveIntoTheCurrentFile()
{
    QFETCH(QVariant, stored);
    const ShortcutSystem system(factory);
    system.userDefaults().setObject("Keyboard Shortcuts Custom", stored);
    const auto &registry = loaded();
    QCOMPARE(keyOf(registry, "play:", 1), QWShortcutKey('x', 0));
    QCOMPARE(system.current().size(), 1);
    QVERIFY(!system.userDefaults().isSet("Keyboard Shortcuts Custom"));
}

void tst_QWKeyboardShortcuts::legacyChangesThatCannotBeReadStay()
{
    const ShortcutSystem system(factory);
    system.userDefaults().setObject("Keyboard Shortcuts Custom", QByteArray("\x04\x0bstreamtyped"));
    loaded();
    QCOMPARE(system.current(), QVariantList());
    QVERIFY(system.readFile(system.path("_current.plist")));
    QVERIFY(system.userDefaults().isSet("Keyboard Shortcuts Custom"));
}

void tst_QWKeyboardShortcuts::legacyChangesDoNotReplaceACurrentFile()
{
    const ShortcutSystem system(factory);
    system.setCurrent({shortcutState("Play", "play:", 'y', 0, 1)});
    system.userDefaults().setObject("Keyboard Shortcuts Custom", QVariantList{});
    QCOMPARE(keyOf(loaded(), "play:", 1), QWShortcutKey('y', 0));
    QVERIFY(system.userDefaults().isSet("Keyboard Shortcuts Custom"));
}

void tst_QWKeyboardShortcuts::oneRegistryPerSystem()
{
    const ShortcutSystem outer(factory);
    auto &first = loaded();
    QCOMPARE(&QWKeyboardShortcuts::sharedInstance(), &first);
    {
        const ShortcutSystem inner;
        QVERIFY(&QWKeyboardShortcuts::sharedInstance() != &first);
    }
    QCOMPARE(&QWKeyboardShortcuts::sharedInstance(), &first);
}

void tst_QWKeyboardShortcuts::factoryGivesGroupsInOrder()
{
    const ShortcutSystem system(factory);
    const auto &registry = loaded();
    QCOMPARE(registry.groups().size(), std::size_t(2));
    QCOMPARE(registry.groups()[0]->name(), QString("Transport"));
    QVERIFY(registry.groups()[1]->isMenu());
    QCOMPARE(registry.groups()[0]->shortcuts()[2]->name(), QString("Stöp"));
    QCOMPARE(registry.displayResults(), registry.groups());
}

void tst_QWKeyboardShortcuts::missingFactoryGivesNoGroups()
{
    const ShortcutSystem system;
    const auto &registry = loaded();
    QVERIFY(registry.groups().empty());
    QVERIFY(!registry.shortcutWithKey(QWShortcutKey('p', 0)));
    QVERIFY(registry.changedShortcuts().isEmpty());
}

void tst_QWKeyboardShortcuts::lookUpsFindTheFirstInGroupOrder()
{
    const ShortcutSystem system(
        {groupState("One", {shortcutState("A", "a:", 'x'), shortcutState("B", "b:", 'x')}),
         groupState("Two", {shortcutState("C", "c:", 'x'), shortcutState("A again", "a:", 'y')})});
    const auto &registry = loaded();
    QCOMPARE(registry.shortcutWithKey(QWShortcutKey('x', 0)), registry.groups()[0]->shortcuts()[0]);
    QCOMPARE(registry.shortcutWithActionTag("a:", 0), registry.groups()[0]->shortcuts()[0]);
    QVERIFY(!registry.shortcutWithKey(std::nullopt));
    QVERIFY(!registry.shortcutWithActionTag("a", 0));
    registry.groups()[0]->shortcuts()[0]->key().clear(); // through the key itself
    QCOMPARE(registry.shortcutWithKey(QWShortcutKey('x', 0)), registry.groups()[0]->shortcuts()[1]);
    registry.groups()[0]->shortcuts()[1]->key().setModifiers(shift);
    QCOMPARE(registry.shortcutWithKey(QWShortcutKey('x', 0)), registry.groups()[1]->shortcuts()[0]);
    registry.groups()[0]->shortcuts()[0]->key() = QWShortcutKey('x', 0);
    QCOMPARE(registry.shortcutWithKey(QWShortcutKey('x', 0)), registry.groups()[0]->shortcuts()[0]);
}

void tst_QWKeyboardShortcuts::storedKeyIsAssigned()
{
    const ShortcutSystem system(factory);
    system.setCurrent({shortcutState("Play", "play:", 'k', command, 2)});
    const auto &registry = loaded();
    QCOMPARE(keyOf(registry, "play:", 2), QWShortcutKey('k', command));
    QCOMPARE(keyOf(registry, "play:", 1), QWShortcutKey('p', 0));
}

void tst_QWKeyboardShortcuts::onlyTheKeyIsTakenFromTheFile()
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

void tst_QWKeyboardShortcuts::storedKeyTakesItFromAnotherAction()
{
    const ShortcutSystem system(factory);
    system.setCurrent({shortcutState("Play", "play:", 's', 0, 1)});
    const auto &registry = loaded();
    QCOMPARE(keyOf(registry, "play:", 1), QWShortcutKey('s', 0));
    QVERIFY(keyOf(registry, "stop:").isClear());
}

void tst_QWKeyboardShortcuts::sameActionWithAnotherTagKeepsTheKey()
{
    const ShortcutSystem system(factory);
    system.setCurrent({shortcutState("Play slow", "play:", 'p', 0, 2)});
    const auto &registry = loaded();
    QCOMPARE(keyOf(registry, "play:", 1), QWShortcutKey('p', 0));
    QCOMPARE(keyOf(registry, "play:", 2), QWShortcutKey('p', 0));
}

void tst_QWKeyboardShortcuts::laterEntriesWin()
{
    const ShortcutSystem system(factory);
    system.setCurrent({shortcutState("Play", "play:", 'k', 0, 1), shortcutState("Stop", "stop:", 'k')});
    const auto &registry = loaded();
    QVERIFY(keyOf(registry, "play:", 1).isClear());
    QCOMPARE(keyOf(registry, "stop:"), QWShortcutKey('k', 0));
}

void tst_QWKeyboardShortcuts::storedClearKeyClears()
{
    const ShortcutSystem system(factory);
    system.setCurrent({shortcutState("Play", "play:", 0, 0, 1)});
    QVERIFY(keyOf(loaded(), "play:", 1).isClear());
}

void tst_QWKeyboardShortcuts::unknownActionIsPassedOver()
{
    const ShortcutSystem system(factory);
    system.setCurrent({shortcutState("Gone", "gone:", 'p'), shortcutState("Play", "play:", 'k', 0, 99)});
    const auto &registry = loaded();
    QVERIFY(keyOf(registry, "play:", 1).isClear()); // its key went to a shortcut that is no longer there
    QVERIFY(!registry.shortcutWithKey(QWShortcutKey('k', 0)));
}

void tst_QWKeyboardShortcuts::reloadPutsKeysOntoMenuItems()
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

void tst_QWKeyboardShortcuts::menuItemKeepsTheKeyThatWasTakenAway()
{
    QMainWindow window;
    const auto *const save = platform::addMenuItem(*window.menuBar()->addMenu("&File"), "Save");
    window.show();
    const ShortcutSystem system(factory);
    system.setCurrent({shortcutState("Play", "play:", 's', command, 1)});
    QVERIFY(keyOf(loaded(), "save:").isClear());
    QCOMPARE(save->keyEquivalent(), QString("s"));
}

void tst_QWKeyboardShortcuts::reloadMakesNewObjects()
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

void tst_QWKeyboardShortcuts::changesAreThoseOfKeys()
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

void tst_QWKeyboardShortcuts::enabledAloneIsNoChange()
{
    const ShortcutSystem system(factory);
    auto &registry = loaded();
    registry.groups()[0]->setEnabled(false);
    QVERIFY(registry.changedShortcuts().isEmpty());
    registry.saveToDefaults();
    QCOMPARE(system.current(), QVariantList());
}

void tst_QWKeyboardShortcuts::savedChangesComeBack()
{
    const ShortcutSystem system(factory);
    auto &registry = loaded();
    registry.shortcutWithActionTag("stop:", 0)->setKey({0xf704, command});
    registry.saveToDefaults();
    QCOMPARE(system.current().size(), 1);
    registry.loadCurrentShortcuts();
    QCOMPARE(keyOf(registry, "stop:"), QWShortcutKey(0xf704, command));
}

void tst_QWKeyboardShortcuts::addingAndRemovingFromTheFactoryIsSurvived()
{
    const ShortcutSystem system(factory);
    const auto &registry = loaded();
    system.setFactory({groupState("New", {shortcutState("New", "new:", 'n')})});
    QVERIFY(registry.changedShortcuts().isEmpty()); // not loaded yet, so without a current shortcut
    system.setFactory({});
    QVERIFY(registry.changedShortcuts().isEmpty());
}

void tst_QWKeyboardShortcuts::representedObjectThatNoFileHoldsIsLeftOut()
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

void tst_QWKeyboardShortcuts::indexAnswersAsAWalkWould()
{
    std::mt19937 random(5);
    const auto any = [&](int count) { return static_cast<int>(random() % static_cast<unsigned>(count)); };
    const auto anyKey = [&] { return QWShortcutKey(char16_t(any(4)), quint32(any(2)) * shift); };
    QVariantList groups;
    for (int g = 0; g < 5; ++g) {
        QVariantList members;
        for (int i = 0; i < 8; ++i)
            members.append(
                shortcutState("x", QString("a%1:").arg(any(6)), char16_t(any(4)), quint32(any(2)) * shift, any(3)));
        groups.append(groupState(QString::number(g), members));
    }
    const ShortcutSystem system(groups);
    const auto &registry = loaded();
    const auto anyGroup = [&] { return registry.groups()[std::size_t(any(5))]; };
    for (int step = 0; step < 3000; ++step) {
        const auto group = anyGroup();
        auto members = group->shortcuts();
        const std::size_t at = members.empty() ? 0 : std::size_t(any(int(members.size())));
        switch (members.empty() ? 9 : any(10)) {
        case 0:
            members[at]->key().clear();
            break;
        case 1:
            members[at]->key().setCharacter(char16_t(any(4)));
            break;
        case 2:
            members[at]->key().setState({{"modifiers", shift}});
            break;
        case 3:
            members[at]->setKey(anyKey());
            break;
        case 4:
            members[at]->key() = members[std::size_t(any(int(members.size())))]->key();
            break;
        case 5:
            members[at]->setTag(any(3));
            break;
        case 6:
            members[at]->setState({{"action", QString("a%1:").arg(any(6))}, {"character", any(4)}});
            break;
        case 7:
            members.erase(members.begin() + int(at));
            group->setShortcuts(members);
            break;
        case 8:
            std::reverse(members.begin(), members.end());
            group->setShortcuts(members);
            break;
        default:
            if (const auto &other = anyGroup()->shortcuts(); !other.empty()) {
                members.push_back(other.front());
                group->setShortcuts(members);
            }
        }
        const QWShortcutKey key = anyKey();
        const platform::Selector action(QString("a%1:").arg(any(6)));
        const int tag = any(3);
        std::shared_ptr<QWShortcut> withKey, withAction;
        for (const auto &walked : registry.groups()) {
            withKey = withKey ? withKey : walked->shortcutWithKey(key);
            withAction = withAction ? withAction : walked->shortcutWithActionTag(action, tag);
        }
        QCOMPARE(registry.shortcutWithKey(key), withKey);
        QCOMPARE(registry.shortcutWithActionTag(action, tag), withAction);
    }
}

void tst_QWKeyboardShortcuts::badFilesHurtNothing_data()
{
    QTest::addColumn<QByteArray>("data");
    const auto list = [](const QVariant &value) { return platform::PropertyList::toXml(value); };
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("garbage") << QByteArray("\x00\xff\xfe garbage", 11);
    QTest::newRow("truncated") << list(factory).left(400);
    QTest::newRow("dictionary") << list(QVariantMap{{"name", "x"}});
    QTest::newRow("text") << list("x");
    QTest::newRow("scalars") << list(QVariantList{1, true, "x", QByteArray("y"), 1.5, QVariantList{}});
    QTest::newRow("wrong types inside") << list(
        QVariantList{QVariantMap{{"name", 1}, {"isMenu", "maybe"}, {"shortcuts", QVariantMap()}},
                     QVariantMap{{"name", QVariantList()}, {"shortcuts", QVariantList{QVariantList{}, "x"}}},
                     QVariantMap{{"action", 17}, {"tag", QVariantMap()}, {"character", "p"}},
                     QVariantMap{{"action", "deleteLater"}, {"character", 'p'}, {"tag", 1e300}}});
    QTest::newRow("empty entries") << list(QVariantList{QVariantMap{}, QVariantMap{}});
    QTest::newRow("strange actions") << list(QVariantList{shortcutState("", "", 'p'), shortcutState("x", ":", 'p'),
                                                          shortcutState(">", ":::", 'q'),
                                                          shortcutState("x", "a b\n%@", 0xd800)});
    QTest::newRow("duplicate keys") << list(
        QVariantList{shortcutState("a", "play:", 's', 0, 1), shortcutState("b", "stop:", 's'),
                     shortcutState("c", "save:", 's'), shortcutState("d", "play:", 's', 0, 2)});
}

void tst_QWKeyboardShortcuts::badFilesHurtNothing()
{
    QFETCH(QByteArray, data);
    ShortcutReceiver receiver;
    const QKeyEvent press(QEvent::KeyPress, Qt::Key_P, Qt::NoModifier, "p");
    { // as current file
        const ShortcutSystem system(factory);
        system.writeFile(system.path("_current.plist"), data);
        auto &registry = loaded();
        QCOMPARE(registry.groups().size(), std::size_t(2));
        QCOMPARE(system.readFile(system.path("_current.plist")), data); // reading writes nothing
        registry.doShortcut(press);
        registry.saveToDefaults();
    }
    { // as factory definition and as preset
        const ShortcutSystem system;
        system.addHostResource("shortcuts.plist", data);
        system.writeFile(system.path("Odd.plist"), data);
        auto &registry = loaded();
        auto &editor = addEditor(registry);
        registry.buildPresetsMenu();
        registry.loadPreset(editor.preset("Odd"));
        registry.doShortcut(press);
        QCOMPARE(system.readFile(system.path("Odd.plist")), data);
    }
}

void tst_QWKeyboardShortcuts::unreadableCurrentFileIsKept()
{
    const ShortcutSystem system(factory);
    system.writeFile(system.path("_current.plist"), "the user's work, half of it");
    auto &registry = loaded();
    registry.shortcutWithActionTag("stop:", 0)->setKey({'x', 0});
    registry.saveToDefaults();
    QCOMPARE(system.current().size(), 1);
    QCOMPARE(system.readFile(system.path("_unreadable _current.plist")), QByteArray("the user's work, half of it"));
    QCOMPARE(registry.presets(), QStringList());
    registry.saveToDefaults(); // the copy is not replaced by what is good
    QCOMPARE(system.readFile(system.path("_unreadable _current.plist")), QByteArray("the user's work, half of it"));
}

void tst_QWKeyboardShortcuts::tenThousandEntries()
{
    QVariantList many, changes;
    for (int i = 0; i < 10'000; ++i) {
        many.append(shortcutState(QString("Shortcut %1").arg(i), "play:", char16_t(0x4e00 + i), 0, i));
        changes.append(shortcutState(QString(), "play:", char16_t(0x4e00 + 9'999 - i), shift, i));
    }
    const ShortcutSystem system({groupState("Many", many)});
    system.setCurrent(changes);
    const auto &registry = loaded();
    QCOMPARE(keyOf(registry, "play:", 0), QWShortcutKey(0x4e00 + 9'999, shift));
    QCOMPARE(registry.changedShortcuts().size(), 10'000);
}

void tst_QWKeyboardShortcuts::readOnlyFolderHurtsNothing()
{
    const ShortcutSystem system(factory);
    // Something in the way keeps even root from writing.
    system.writeFile(QWApplication::sharedApplication()->supportDirectory(), "no folder");
    auto &registry = loaded();
    addEditor(registry).name = "Mine";
    QCOMPARE(registry.groups().size(), std::size_t(2));
    registry.shortcutWithActionTag("stop:", 0)->setKey({'x', 0});
    registry.saveToDefaults();
    registry.buildPresetsMenu();
    registry.saveShortcutPanelDidEnd(1);
    QCOMPARE(keyOf(registry, "stop:"), QWShortcutKey('x', 0));
}

void tst_QWKeyboardShortcuts::fullDiskKeepsWhatWasThere()
{
    const ShortcutSystem system(factory);
    system.setCurrent({shortcutState("Save", "save:", 'w', command)});
    const auto before = system.readFile(system.path("_current.plist"));
    auto &registry = loaded();
    registry.groups()[0]->shortcuts()[0]->setKey({'x', 0});
    registry.groups()[0]->shortcuts()[2]->setKey({'y', 0});
    {
        const SmallFiles limit(before->size() + 100);
        registry.saveToDefaults();
    }
    QCOMPARE(system.readFile(system.path("_current.plist")), before);
    registry.saveToDefaults();
    QCOMPARE(system.current().size(), 3);
}

void tst_QWKeyboardShortcuts::presetsMenuListsThePresets()
{
    const ShortcutSystem system(factory);
    auto &registry = loaded();
    auto &editor = addEditor(registry);
    for (const char *name :
         {"Room 2.5.plist", ".hidden.plist", "_mine.plist", "& Other.plist", "Text.txt", "No extension"})
        system.writeFile(system.path(name), "");
    registry.buildPresetsMenu();
    registry.buildPresetsMenu();
    QCOMPARE(editor.presetTitles(), (QStringList{"& Other", "No extension", "Room 2.5", "Text"}));
    QCOMPARE(editor.menu.actions().size(), 10);
    QCOMPARE(qobject_cast<platform::MenuItem *>(editor.preset("Text"))->action(), platform::Selector("loadPreset:"));
}

void tst_QWKeyboardShortcuts::presetsMenuNeedsAMoreThanTheCurrentFile()
{
    const ShortcutSystem system(factory);
    auto &registry = loaded();
    auto &editor = addEditor(registry);
    platform::addMenuItem(editor.menu, "left over");
    registry.buildPresetsMenu();
    QCOMPARE(editor.presetTitles(), QStringList());
    system.writePropertyList(system.path("Mine.plist"), QVariantList());
    registry.buildPresetsMenu();
    QCOMPARE(editor.presetTitles(), QStringList{"Mine"});
}

void tst_QWKeyboardShortcuts::presetIsLoaded()
{
    const ShortcutSystem system(factory);
    auto &registry = loaded();
    auto &editor = addEditor(registry);
    const QVariantList preset{shortcutState("Stop", "stop:", 'x'), 7, shortcutState("Gone", "gone:", 'y')};
    system.writePropertyList(system.path("Left Hand.plist"), preset);
    registry.buildPresetsMenu();
    editor.search = "play";
    registry.loadPreset(editor.preset("Left Hand"));
    QCOMPARE(keyOf(registry, "stop:"), QWShortcutKey('x', 0));
    QCOMPARE(system.current(), system.readPropertyList(system.path("Left Hand.plist")).toList());
    QCOMPARE(editor.search, QString());
    QCOMPARE(registry.displayResults(), registry.groups());
    QVERIFY(editor.reloads > 0);
}

void tst_QWKeyboardShortcuts::unreadablePresetChangesNothing()
{
    const ShortcutSystem system(factory);
    system.setCurrent({shortcutState("Stop", "stop:", 'x')});
    auto &registry = loaded();
    auto &editor = addEditor(registry);
    system.writeFile(system.path("Bad.plist"), "garbage");
    system.makeDirectory(system.path("Folder.plist"));
    registry.buildPresetsMenu();
    registry.loadPreset(editor.preset("Bad"));
    registry.loadPreset(editor.preset("Folder"));
    registry.loadPreset(nullptr);
    QCOMPARE(keyOf(registry, "stop:"), QWShortcutKey('x', 0));
    QCOMPARE(system.current().size(), 1);
}

void tst_QWKeyboardShortcuts::presetIsSaved()
{
    const ShortcutSystem system(factory);
    auto &registry = loaded();
    auto &editor = addEditor(registry);
    registry.shortcutWithActionTag("stop:", 0)->setKey({'x', 0});
    editor.name = "Mine";
    registry.saveShortcutPanelDidEnd(1);
    QCOMPARE(system.readPropertyList(system.path("Mine.plist")).toList().size(), 1);
    QCOMPARE(editor.presetTitles(), QStringList{"Mine"});
    QCOMPARE(system.alerts.shown, QStringList());
    QCOMPARE(system.current(), QVariantList()); // a preset is no commit
}

void tst_QWKeyboardShortcuts::presetNamesAreMadeFileNames_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("file");
    QTest::newRow("slashes") << "Mix/Edit/"
                             << "Mix_Edit_.plist";
    QTest::newRow("dots") << "Room 2.5"
                          << "Room 2.5.plist";
    QTest::newRow("parent") << "a/../../b"
                            << "a_.._.._b.plist";
    QTest::newRow("emoji") << "🎛 Ünï & \"<'"
                           << "🎛 Ünï & \"<'.plist";
    QTest::newRow("line break") << "a\nb"
                                << "a\nb.plist";
    QTest::newRow("blank") << " "
                           << " .plist";
    QTest::newRow("percent") << "100%@"
                             << "100%@.plist";
    QTest::newRow("empty") << ""
                           << "";
    QTest::newRow("hidden") << ".x"
                            << "";
    QTest::newRow("current") << "_current"
                             << "";
    QTest::newRow("too long") << QString(300, 'x') << "";
}

void tst_QWKeyboardShortcuts::presetNamesAreMadeFileNames()
{
    QFETCH(QString, name);
    QFETCH(QString, file);
    const ShortcutSystem system(factory);
    auto &registry = loaded();
    addEditor(registry).name = name;
    registry.saveShortcutPanelDidEnd(1);
    const QDir folder(registry.shortcutsDirectory());
    const QStringList expected = file.isEmpty() ? QStringList{"_current.plist"} : QStringList{"_current.plist", file};
    QStringList entries = folder.entryList(QDir::Files | QDir::Hidden);
    QCOMPARE(QSet<QString>(entries.begin(), entries.end()), QSet<QString>(expected.begin(), expected.end()));
}

void tst_QWKeyboardShortcuts::replacingAPresetIsAsked()
{
    const ShortcutSystem system(factory);
    auto &registry = loaded();
    addEditor(registry).name = "Mine";
    system.writeFile(system.path("Mine.plist"), "old");
    system.alerts.answerWith({"Cancel"});
    registry.saveShortcutPanelDidEnd(1);
    QCOMPARE(system.readFile(system.path("Mine.plist")), QByteArray("old"));
    const platform::Alert &alert = system.alerts.alerts.front();
    QCOMPARE(alert.messageText, QString("“Mine” already exists. Do you want to replace it?"));
    QCOMPARE(alert.informativeText, QString("A preset with the same name already exists. Replacing it will overwrite "
                                            "its current contents."));
    QCOMPARE(alert.buttons, (QStringList{"Replace", "Cancel"}));
    registry.saveShortcutPanelDidEnd(1);
    QCOMPARE(system.readPropertyList(system.path("Mine.plist")), QVariant(QVariantList()));
}

void tst_QWKeyboardShortcuts::cancelledSaveSheetSavesNothing()
{
    const ShortcutSystem system(factory);
    auto &registry = loaded();
    addEditor(registry).name = "Mine";
    registry.saveShortcutPanelDidEnd(0);
    registry.saveShortcutPanelDidEnd(-1);
    QCOMPARE(registry.presets(), QStringList());
}

void tst_QWKeyboardShortcuts::resetIsAsked()
{
    const ShortcutSystem system(factory);
    system.setCurrent({shortcutState("Stop", "stop:", 'x')});
    auto &registry = loaded();
    auto &editor = addEditor(registry);
    editor.search = "stop";
    system.alerts.answerWith({"Cancel"});
    registry.loadFactoryPreset(nullptr);
    QCOMPARE(keyOf(registry, "stop:"), QWShortcutKey('x', 0));
    QCOMPARE(editor.search, QString("stop"));
    registry.loadFactoryPreset(nullptr);
    QCOMPARE(keyOf(registry, "stop:"), QWShortcutKey('s', 0));
    QVERIFY(registry.changedShortcuts().isEmpty());
    QCOMPARE(system.readFile(system.path("_current.plist")), platform::PropertyList::toXml(QVariantList()));
    QCOMPARE(editor.search, QString());
    const platform::Alert &alert = system.alerts.alerts.back();
    QCOMPARE(alert.messageText,
             QString("Are you sure you want to reset your keyboard shortcuts to the factory defaults?"));
    QCOMPARE(alert.informativeText, QString("This action is not undoable."));
    QCOMPARE(alert.buttons, (QStringList{"Reset", "Cancel"}));
}

void tst_QWKeyboardShortcuts::exportWritesTheChanges()
{
    const ShortcutSystem system(factory);
    auto &registry = loaded();
    registry.shortcutWithActionTag("stop:", 0)->setKey({'x', 0});
    registry.exportShortcuts(nullptr);
    QCOMPARE(system.filePanels.saves.front().requiredFileType, QString("qwshortcuts"));
    const QString path = system.real("~/Mine.qwshortcuts");
    system.filePanels.endSave(platform::FilePanels::OK, path);
    QCOMPARE(system.readPropertyList(path).toList().size(), 1);
    registry.exportShortcuts(nullptr);
    system.filePanels.endSave(platform::FilePanels::Cancel);
}

void tst_QWKeyboardShortcuts::importAddsAPreset_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("preset");
    QTest::newRow("own") << "Mine.qwshortcuts"
                         << "Mine";
    QTest::newRow("legacy") << "Old.tovrshortcuts"
                            << "Old";
    QTest::newRow("dots") << "Room 2.5.qwshortcuts"
                          << "Room 2.5";
}

void tst_QWKeyboardShortcuts::importAddsAPreset()
{
    QFETCH(QString, file);
    const ShortcutSystem system(factory);
    auto &registry = loaded();
    const auto &editor = addEditor(registry);
    const QString path = system.real("~/" + file);
    system.writePropertyList(path, QVariantList{shortcutState("Stop", "stop:", 'x')});
    registry.loadShortcuts(nullptr);
    QCOMPARE(system.filePanels.opens.front().fileTypes, (QStringList{"qwshortcuts", "tovrshortcuts"}));
    system.filePanels.endOpen(platform::FilePanels::OK, {path});
    QTEST(editor.presetTitles().value(0), "preset");
    QCOMPARE(keyOf(registry, "stop:"), QWShortcutKey('s', 0)); // only a preset so far
    registry.loadPreset(editor.menu.actions().last());
    QCOMPARE(keyOf(registry, "stop:"), QWShortcutKey('x', 0));
}

void tst_QWKeyboardShortcuts::importOfNonsenseStopsSilently()
{
    const ShortcutSystem system(factory);
    auto &registry = loaded();
    system.writeFile("~/Bad.qwshortcuts", "garbage");
    system.makeDirectory("~/Folder.qwshortcuts");
    system.writePropertyList("~/Dictionary.qwshortcuts", QVariantMap());
    for (const char *name :
         {"~/Bad.qwshortcuts", "~/Folder.qwshortcuts", "~/Dictionary.qwshortcuts", "~/Gone.qwshortcuts"}) {
        registry.loadShortcuts(nullptr);
        system.filePanels.endOpen(platform::FilePanels::OK, {system.real(name)});
    }
    registry.loadShortcuts(nullptr);
    system.filePanels.endOpen(platform::FilePanels::Cancel);
    QCOMPARE(registry.presets(), QStringList());
    QCOMPARE(system.alerts.shown, QStringList());
}

void tst_QWKeyboardShortcuts::importCannotReachTheCurrentFile()
{
    const ShortcutSystem system(factory);
    auto &registry = loaded();
    const QString path = system.real("~/_current.qwshortcuts");
    system.writePropertyList(path, QVariantList{shortcutState("Stop", "stop:", 'x')});
    registry.loadShortcuts(nullptr);
    system.filePanels.endOpen(platform::FilePanels::OK, {path});
    QCOMPARE(system.current(), QVariantList());
    QCOMPARE(registry.presets(), QStringList{"current"});
}

void tst_QWKeyboardShortcuts::searchShowsWhatMatches_data()
{
    QTest::addColumn<QString>("search");
    QTest::addColumn<QStringList>("shown");
    QTest::newRow("empty") << "" << QStringList{"Transport", "Play", "Play slow", "Stöp", "File", "Save"};
    QTest::newRow("other case") << "PLAY" << QStringList{"Transport", "Play", "Play slow"};
    QTest::newRow("without the accent") << "stop" << QStringList{"Transport", "Stöp"};
    QTest::newRow("another accent") << "pläy s" << QStringList{"Transport", "Play slow"};
    QTest::newRow("in two groups") << "s" << QStringList{"Transport", "Play slow", "Stöp", "File", "Save"};
    QTest::newRow("group names do not count") << "transport" << QStringList{};
    QTest::newRow("nothing") << "xyz" << QStringList{};
}

void tst_QWKeyboardShortcuts::searchShowsWhatMatches()
{
    QFETCH(QString, search);
    const ShortcutSystem system(factory);
    auto &registry = loaded();
    addEditor(registry).search = search;
    registry.reloadDisplay();
    QStringList shown;
    for (const auto &group : registry.displayResults()) {
        shown.append(group->name());
        for (const auto &shortcut : group->shortcuts()) {
            shown.append(shortcut->name());
            QCOMPARE(registry.shortcutWithActionTag(shortcut->action(), shortcut->tag()), shortcut); // shared
        }
        QCOMPARE(group->isMenu(), group->name() == "File");
    }
    QTEST(shown, "shown");
}

void tst_QWKeyboardShortcuts::editorOpensAgainWhenItWasLeftOpen()
{
    const ShortcutSystem system(factory);
    auto &editor = addEditor(QWKeyboardShortcuts::sharedInstance());
    QWKeyboardShortcuts::loadShortcuts();
    QCOMPARE(editor.opened, 0);
    system.userDefaults().setObject("Keyboard Shortcuts Open", true);
    QWKeyboardShortcuts::loadShortcuts();
    QCOMPARE(editor.opened, 1);
}

QW_TEST_MAIN(tst_QWKeyboardShortcuts)
#include "tst_QWKeyboardShortcuts.moc"

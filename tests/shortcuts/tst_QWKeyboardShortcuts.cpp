#include "FakeShortcutEditor.h"
#include "SampleShortcuts.h"
#include "fakes/QWTestMain.h"

#include <QWPlatform/foundation/PropertyList.h>
#include <QWPlatform/foundation/UserDefaults.h>

#include <random>

using namespace sample;

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
    void indexAnswersAsAWalkWould();
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

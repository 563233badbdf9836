#include "FakeShortcutEditor.h"
#include "SampleShortcuts.h"
#include "fakes/QWTestMain.h"

#include <QWPlatform/foundation/PropertyList.h>

#include <QFile>

#include <csignal>
#include <sys/resource.h>
#include <sys/stat.h>

using namespace sample;

namespace
{
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
} // namespace

class tst_ShortcutBadInput : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void badFilesHurtNothing_data();
    void badFilesHurtNothing();
    void unreadableCurrentFileIsKept();
    void everyUnreadableFileIsKept();
    void pipesAreNoFiles();
    void tenThousandEntries();
    void readOnlyFolderHurtsNothing();
    void fullDiskKeepsWhatWasThere();
    void fullDiskLeavesNoHalfFiles();
    void hugeFileIsNotReplaced();
    void failedWritesAreLogged();
    void failedWritesAreToldWhereTheHostWantsIt();
    void whatCannotBeSetAsideIsNotWrittenOver();
};

void tst_ShortcutBadInput::badFilesHurtNothing_data()
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

void tst_ShortcutBadInput::badFilesHurtNothing()
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

void tst_ShortcutBadInput::unreadableCurrentFileIsKept()
{
    const ShortcutSystem system(factory);
    system.writeFile(system.path("_current.plist"), "the user's work, half of it");
    auto &registry = loaded();
    registry.shortcutWithActionTag("stop:", 0)->setKey({'x', 0});
    registry.saveToDefaults();
    QCOMPARE(system.current().size(), 1);
    QCOMPARE(system.readFile(system.path("_kept _current.plist")), QByteArray("the user's work, half of it"));
    QCOMPARE(registry.presets(), QStringList());
    registry.saveToDefaults(); // the copy is not replaced by what is good
    QCOMPARE(system.readFile(system.path("_kept _current.plist")), QByteArray("the user's work, half of it"));
}

void tst_ShortcutBadInput::everyUnreadableFileIsKept()
{
    const ShortcutSystem system(factory);
    for (const char *data : {"first", "second", "third"}) {
        system.writeFile(system.path("_current.plist"), data);
        auto &registry = loaded();
        registry.saveToDefaults();
    }
    QCOMPARE(system.readFile(system.path("_kept _current.plist")), QByteArray("first"));
    QCOMPARE(system.readFile(system.path("_kept 2 _current.plist")), QByteArray("second"));
    QCOMPARE(system.readFile(system.path("_kept 3 _current.plist")), QByteArray("third"));
}

/// Reading one would wait for somebody to write, for ever.
void tst_ShortcutBadInput::pipesAreNoFiles()
{
    const ShortcutSystem system(factory);
    system.makeDirectory(system.path("."));
    for (const char *name : {"_current.plist", "Pipe.plist", "Pipe.qwshortcuts"})
        QCOMPARE(::mkfifo(QFile::encodeName(system.path(name)).constData(), 0600), 0);
    auto &registry = loaded();
    auto &editor = addEditor(registry);
    registry.buildPresetsMenu();
    registry.loadPreset(editor.preset("Pipe"));
    registry.loadShortcuts(nullptr);
    system.filePanels.endOpen(platform::FilePanels::OK, {system.path("Pipe.qwshortcuts")});
    registry.saveToDefaults();
    editor.name = "Pipe";
    system.alerts.answerWith({"Replace"});
    registry.saveShortcutPanelDidEnd(1);
    QCOMPARE(registry.groups().size(), std::size_t(2));
}

void tst_ShortcutBadInput::tenThousandEntries()
{
    QVariantList many, changes;
    for (int i = 0; i < 10'000; ++i) {
        many.append(shortcutState(QString("Shortcut %1").arg(i), "play:", char16_t(0x4e00 + i), 0, i));
        changes.append(shortcutState(QString(), "play:", char16_t(0x4e00 + 9'999 - i), shift, i));
    }
    const ShortcutSystem system({groupState("Many", many)});
    system.setCurrent(changes);
    auto &registry = loaded();
    QCOMPARE(keyOf(registry, "play:", 0), QWShortcutKey(0x4e00 + 9'999, shift));
    QCOMPARE(registry.changedShortcuts().size(), 10'000);
    auto &editor = addEditor(registry);
    system.writePropertyList("~/Many.qwshortcuts", changes.mid(5'000));
    registry.loadShortcuts(nullptr);
    system.filePanels.endOpen(platform::FilePanels::OK, {system.real("~/Many.qwshortcuts")});
    registry.loadPreset(editor.preset("Many"));
    QCOMPARE(registry.changedShortcuts().size(), 5'000);
}

void tst_ShortcutBadInput::readOnlyFolderHurtsNothing()
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

void tst_ShortcutBadInput::fullDiskKeepsWhatWasThere()
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

/// An empty file would be listed as a preset, and set aside as changes that cannot be read.
void tst_ShortcutBadInput::fullDiskLeavesNoHalfFiles()
{
    const ShortcutSystem system(factory);
    const SmallFiles limit(100);
    auto &registry = loaded();
    QVERIFY(!QFile::exists(registry.currentShortcutsPath()));
    addEditor(registry).name = "Mine";
    registry.saveShortcutPanelDidEnd(1);
    registry.exportShortcuts(nullptr);
    system.filePanels.endSave(platform::FilePanels::OK, system.real("~/Mine.qwshortcuts"));
    QCOMPARE(registry.presets(), QStringList());
    QVERIFY(!QFile::exists(system.path("Mine.plist")));
    QVERIFY(!QFile::exists(system.real("~/Mine.qwshortcuts")));
}

/// With a hole in it, it takes no room on the disk, and all of the memory if it were read.
void tst_ShortcutBadInput::hugeFileIsNotReplaced()
{
    const ShortcutSystem system(factory);
    auto &registry = loaded();
    registry.setAlertsFailures(true);
    const QString path = system.real("~/Recording.qwshortcuts");
    QFile huge(path);
    QVERIFY(huge.open(QIODevice::WriteOnly) && huge.resize(qint64(3) << 30));
    registry.exportShortcuts(nullptr);
    system.filePanels.endSave(platform::FilePanels::OK, path);
    QVERIFY(system.alerts.alerts.front().informativeText.contains("What has this name is too large to be replaced."));
    QCOMPARE(huge.size(), qint64(3) << 30);
}

void tst_ShortcutBadInput::failedWritesAreLogged()
{
    const ShortcutSystem system(factory);
    auto &registry = loaded();
    registry.shortcutWithActionTag("stop:", 0)->setKey({'x', 0});
    const SmallFiles limit(100);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("“_current.plist” could not be written. .+"));
    registry.saveToDefaults();
    QCOMPARE(system.alerts.shown, QStringList());
}

void tst_ShortcutBadInput::failedWritesAreToldWhereTheHostWantsIt()
{
    const ShortcutSystem system(factory);
    auto &registry = loaded();
    registry.setAlertsFailures(true);
    addEditor(registry).name = "Mine";
    registry.shortcutWithActionTag("stop:", 0)->setKey({'x', 0});
    system.writePropertyList("~/Other.qwshortcuts", QVariantList{shortcutState("Save", "save:", 'w', command)});
    QStringList files;
    {
        const SmallFiles limit(100);
        registry.saveToDefaults();
        registry.saveShortcutPanelDidEnd(1);
        registry.loadShortcuts(nullptr);
        system.filePanels.endOpen(platform::FilePanels::OK, {system.real("~/Other.qwshortcuts")});
        registry.exportShortcuts(nullptr);
        system.filePanels.endSave(platform::FilePanels::OK, system.real("~/Export.qwshortcuts"));
    }
    QCOMPARE(system.alerts.shown, QStringList(4, "The keyboard shortcuts could not be saved."));
    const char *const names[] = {"_current.plist", "Mine.plist", "Other.plist", "Export.qwshortcuts"};
    for (int i = 0; i < 4; ++i)
        QVERIFY2(system.alerts.alerts[std::size_t(i)].informativeText.contains(names[i]), names[i]);
    registry.saveToDefaults(); // there is room again
    QCOMPARE(system.alerts.shown.size(), 4);
}

/// A name so long that there is none for a second former preset.
void tst_ShortcutBadInput::whatCannotBeSetAsideIsNotWrittenOver()
{
    const ShortcutSystem system(factory);
    auto &registry = loaded();
    registry.setAlertsFailures(true);
    const QString name(243, 'n');
    const auto import = [&](char16_t key) {
        system.writePropertyList("~/" + name + ".qwshortcuts", QVariantList{shortcutState("Stop", "stop:", key)});
        registry.loadShortcuts(nullptr);
        system.filePanels.endOpen(platform::FilePanels::OK, {system.real("~/" + name + ".qwshortcuts")});
        return system.readPropertyList(system.path(name + ".plist")).toList().value(0).toMap().value("character");
    };
    QCOMPARE(import('a').toInt(), int('a'));
    QCOMPARE(import('b').toInt(), int('b'));
    QCOMPARE(system.alerts.shown, QStringList());
    QCOMPARE(import('c').toInt(), int('b'));
    QCOMPARE(system.alerts.shown.size(), 1);
}

QW_TEST_MAIN(tst_ShortcutBadInput)
#include "tst_ShortcutBadInput.moc"

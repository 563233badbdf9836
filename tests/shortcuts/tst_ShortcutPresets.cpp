#include "FakeShortcutEditor.h"
#include "SampleShortcuts.h"
#include "fakes/QWTestMain.h"

#include <QWPlatform/appkit/MenuItem.h>
#include <QWPlatform/foundation/PropertyList.h>

#include <QDir>

using namespace sample;

class tst_ShortcutPresets : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void presetsMenuListsThePresets();
    void presetsMenuNeedsMoreThanTheCurrentFile();
    void presetIsLoaded();
    void unreadablePresetCountsAsEmpty_data();
    void unreadablePresetCountsAsEmpty();
    void loadingWithoutAnItemDoesNothing();
    void presetIsSaved();
    void presetNamesAreMadeFileNames_data();
    void presetNamesAreMadeFileNames();
    void replacingAPresetIsAsked();
    void cancelledSaveSheetSavesNothing();
    void resetIsAsked();
    void exportWritesTheChanges();
    void importAddsAPreset_data();
    void importAddsAPreset();
    void importKeepsThePresetWhosePlaceItTakes();
    void importOfNonsenseStopsSilently();
    void importCannotReachTheCurrentFile();
};

void tst_ShortcutPresets::presetsMenuListsThePresets()
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

void tst_ShortcutPresets::presetsMenuNeedsMoreThanTheCurrentFile()
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

void tst_ShortcutPresets::presetIsLoaded()
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

void tst_ShortcutPresets::unreadablePresetCountsAsEmpty_data()
{
    QTest::addColumn<QString>("preset");
    QTest::newRow("garbage") << "Bad";
    QTest::newRow("folder") << "Folder";
    QTest::newRow("gone") << "Text"; // "Text.txt" is listed, "Text.plist" is what is read
}

void tst_ShortcutPresets::unreadablePresetCountsAsEmpty()
{
    QFETCH(QString, preset);
    const ShortcutSystem system(factory);
    const QVariantList changes{shortcutState("Stop", "stop:", 'x')};
    system.setCurrent(changes);
    auto &registry = loaded();
    auto &editor = addEditor(registry);
    editor.search = "play";
    system.writeFile(system.path("Bad.plist"), "garbage");
    system.makeDirectory(system.path("Folder.plist"));
    system.writeFile(system.path("Text.txt"), "words");
    registry.buildPresetsMenu();
    registry.loadPreset(editor.preset(preset));
    QCOMPARE(keyOf(registry, "stop:"), QWShortcutKey('s', 0));
    QCOMPARE(system.readFile(system.path("_current.plist")), platform::PropertyList::toXml(QVariantList()));
    QCOMPARE(editor.search, QString());
    QCOMPARE(system.readFile(system.path("Bad.plist")), QByteArray("garbage"));
    QCOMPARE(system.readPropertyList(system.path("_kept _current.plist")), QVariant(changes)); // the user's, not lost
    registry.loadPreset(editor.preset(preset)); // nothing to keep this time
    QVERIFY(!system.readFile(system.path("_kept 2 _current.plist")));
}

void tst_ShortcutPresets::loadingWithoutAnItemDoesNothing()
{
    const ShortcutSystem system(factory);
    system.setCurrent({shortcutState("Stop", "stop:", 'x')});
    auto &registry = loaded();
    registry.loadPreset(nullptr);
    QCOMPARE(keyOf(registry, "stop:"), QWShortcutKey('x', 0));
    QCOMPARE(system.current().size(), 1);
}

void tst_ShortcutPresets::presetIsSaved()
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

void tst_ShortcutPresets::presetNamesAreMadeFileNames_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("file");
    QTest::newRow("slashes") << "Mix/Edit/"
                             << "Mix_Edit_.plist";
    QTest::newRow("slash first") << "/x"
                                 << "_x.plist";
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

void tst_ShortcutPresets::presetNamesAreMadeFileNames()
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

void tst_ShortcutPresets::replacingAPresetIsAsked()
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

void tst_ShortcutPresets::cancelledSaveSheetSavesNothing()
{
    const ShortcutSystem system(factory);
    auto &registry = loaded();
    addEditor(registry).name = "Mine";
    registry.saveShortcutPanelDidEnd(0);
    registry.saveShortcutPanelDidEnd(-1);
    QCOMPARE(registry.presets(), QStringList());
}

void tst_ShortcutPresets::resetIsAsked()
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

void tst_ShortcutPresets::exportWritesTheChanges()
{
    const ShortcutSystem system(factory);
    auto &registry = loaded();
    registry.shortcutWithActionTag("stop:", 0)->setKey({'x', 0});
    registry.exportShortcuts(nullptr);
    QCOMPARE(system.filePanels.saves.front().requiredFileType, QString("qwshortcuts"));
    QCOMPARE(system.filePanels.saves.front().suggestedName, QString("Test Host Shortcuts"));
    const QString path = system.real("~/Mine.qwshortcuts");
    system.filePanels.endSave(platform::FilePanels::OK, path);
    QCOMPARE(system.readPropertyList(path).toList().size(), 1);
    registry.exportShortcuts(nullptr);
    system.filePanels.endSave(platform::FilePanels::Cancel);
}

void tst_ShortcutPresets::importAddsAPreset_data()
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

void tst_ShortcutPresets::importAddsAPreset()
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

/// Nobody is asked whether it may be replaced.
void tst_ShortcutPresets::importKeepsThePresetWhosePlaceItTakes()
{
    const ShortcutSystem system(factory);
    auto &registry = loaded();
    const QVariantList own{shortcutState("Stop", "stop:", 'x')};
    const QVariantList imported{shortcutState("Stop", "stop:", 'y')};
    const QString path = system.real("~/Mine.qwshortcuts");
    system.writePropertyList(system.path("Mine.plist"), own);
    system.writePropertyList(path, imported);
    for (int time = 0; time < 2; ++time) { // the second one brings nothing new
        registry.loadShortcuts(nullptr);
        system.filePanels.endOpen(platform::FilePanels::OK, {path});
    }
    QCOMPARE(system.readPropertyList(system.path("Mine.plist")), QVariant(imported));
    QCOMPARE(system.readPropertyList(system.path("_kept Mine.plist")), QVariant(own));
    QVERIFY(!system.readFile(system.path("_kept 2 Mine.plist")));
    QCOMPARE(registry.presets(), QStringList{"Mine"});
}

void tst_ShortcutPresets::importOfNonsenseStopsSilently()
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

void tst_ShortcutPresets::importCannotReachTheCurrentFile()
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

QW_TEST_MAIN(tst_ShortcutPresets)
#include "tst_ShortcutPresets.moc"

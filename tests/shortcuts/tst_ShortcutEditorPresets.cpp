#include "EditorHost.h"
#include "fakes/QWTestMain.h"

#include <QWPlatform/appkit/MenuItem.h>

#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenu>
#include <QPushButton>
#include <QSignalSpy>

namespace
{
QStringList titlesOf(const QMenu &menu)
{
    QStringList titles;
    for (const QAction *const item : menu.actions())
        titles.append(item->isSeparator() ? "-" : platform::titleOf(*item));
    return titles;
}

QAction *itemTitled(const QMenu &menu, const QString &title)
{
    const QList<QAction *> items = menu.actions();
    const auto found =
        std::find_if(items.begin(), items.end(), [&](auto *i) { return platform::titleOf(*i) == title; });
    return found == items.end() ? nullptr : *found;
}
} // namespace

/// The pop-up with its commands, and the sheet that saves a preset.
class tst_ShortcutEditorPresets : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { m_host.reset(); }
    void sixCommandsComeBeforeThePresets();
    void commandsDoWhatTheySay();
    void commandsAreEnabledWhileTheWindowIsKey();
    void chosenPresetIsLoaded();
    void searchFieldHearsThatItIsEmpty();
    void currentPresetIsChecked();
    void saveSheetBeginsEmpty();
    void buttonNeedsAName();
    void wrongNamesAreRefusedKeyByKey_data();
    void wrongNamesAreRefusedKeyByKey();
    void refusalIsTold();
    void presetIsSaved();
    void cancelSavesNothing();
    void escapeSavesNothing();
    void typingANameFiresNoShortcut();
    void replacingIsAsked();
    void filePanelGivesTheKeyboardBack_data();
    void filePanelGivesTheKeyboardBack();

private:
    QMenu &menu() { return *m_host->outlet<QPushButton>("presetsPopup")->menu(); }

    /// As the user does: the menu opens, which asks who takes its items.
    void choose(const QString &title)
    {
        menu().popup(m_host->window()->pos());
        QAction *const item = itemTitled(menu(), title);
        QVERIFY2(item && item->isEnabled(), qPrintable(title));
        menu().close();
        item->trigger();
    }

    bool beginSaving()
    {
        choose("Save Preset…");
        return m_saveSheet->isVisible() && EditorHost::becomesKey(*m_saveSheet);
    }

    void typeName(const QString &name) { QTest::keyClicks(m_name, name); }

    std::unique_ptr<EditorHost> m_host;
    QWidget *m_saveSheet = nullptr;
    QLineEdit *m_name = nullptr;
    QPushButton *m_save = nullptr;
};

void tst_ShortcutEditorPresets::init()
{
    m_host = std::make_unique<EditorHost>();
    m_host->system.writePropertyList(m_host->system.path("Left Hand.plist"),
                                     QVariantList{shortcutState("Play", "play:", 'q', 0, 1)});
    QVERIFY(m_host->open());
    m_saveSheet = m_host->outlet<QWidget>("saveShortcutPanel");
    m_name = m_host->outlet<QLineEdit>("saveShortcutText");
    m_save = m_host->outlet<QPushButton>("saveShortcutButton");
}

void tst_ShortcutEditorPresets::sixCommandsComeBeforeThePresets()
{
    const QStringList commands{"Save Preset…", "Import…", "Export…", "-", "Reset to Factory Defaults…", "-"};
    QCOMPARE(titlesOf(menu()), commands + QStringList{"Left Hand"});
    m_host->system.writePropertyList(m_host->system.path("Other.plist"), QVariantList());
    m_host->registry().buildPresetsMenu();
    QCOMPARE(titlesOf(menu()).mid(0, 6), commands);
    QCOMPARE(menu().actions().size(), 8);
}

void tst_ShortcutEditorPresets::commandsDoWhatTheySay()
{
    choose("Import…");
    QCOMPARE(m_host->system.filePanels.opens.size(), std::size_t(1));
    QCOMPARE(m_host->system.filePanels.opens.front().fileTypes, (QStringList{"qwshortcuts", "tovrshortcuts"}));
    QCOMPARE(m_host->system.filePanels.opens.front().window, m_host->window());
    choose("Export…");
    QCOMPARE(m_host->system.filePanels.saves.size(), std::size_t(1));
    m_host->system.alerts.answerWith({"Reset"});
    m_host->at(0, 0)->setKey(QWShortcutKey('k', 0));
    m_host->registry().saveToDefaults();
    choose("Reset to Factory Defaults…");
    QCOMPARE(m_host->at(0, 0)->key(), QWShortcutKey('p', 0));
    QVERIFY(beginSaving());
}

void tst_ShortcutEditorPresets::commandsAreEnabledWhileTheWindowIsKey()
{
    menu().popup(m_host->window()->pos());
    for (const QAction *const item : menu().actions())
        QVERIFY(item->isSeparator() || item->isEnabled());
    menu().close();
}

void tst_ShortcutEditorPresets::chosenPresetIsLoaded()
{
    auto *const search = m_host->outlet<QLineEdit>("searchText");
    search->setText("cut");
    choose("Left Hand");
    QCOMPARE(m_host->at(0, 0)->key(), QWShortcutKey('q', 0));
    QCOMPARE(search->text(), QString());
    QCOMPARE(m_host->model()->rowCount(), 2);
}

/// Else its button to empty it would stay.
void tst_ShortcutEditorPresets::searchFieldHearsThatItIsEmpty()
{
    auto &search = *m_host->outlet<QLineEdit>("searchText");
    search.setFocus(); // "p" is a shortcut, too
    QTest::keyClicks(&search, "cut");
    QCOMPARE(m_host->model()->rowCount(), 1);
    m_host->outline()->collapseAll();
    const QSignalSpy changes(&search, &QLineEdit::textChanged);
    m_host->system.alerts.answerWith({"Reset"});
    m_host->registry().loadFactoryPreset(nullptr);
    QCOMPARE(search.text(), QString());
    QCOMPARE(changes.size(), 1);
    QCOMPARE(m_host->model()->rowCount(), 2);
    QTest::keyClicks(&search, "p"); // searches as before
    QVERIFY(m_host->outline()->isExpanded(m_host->group(0)));
}

void tst_ShortcutEditorPresets::currentPresetIsChecked()
{
    const auto isChecked = [&] {
        menu().popup({});
        menu().close();
        return itemTitled(menu(), "Left Hand")->isChecked();
    };
    QVERIFY(!isChecked());
    choose("Left Hand");
    QVERIFY(isChecked());
    m_host->at(0, 0)->setKey(QWShortcutKey('k', 0));
    m_host->registry().saveToDefaults();
    QVERIFY(!isChecked());
    m_host->system.writeFile(m_host->system.path("Left Hand.plist"), "no list");
    QVERIFY(!isChecked());
}

void tst_ShortcutEditorPresets::saveSheetBeginsEmpty()
{
    QVERIFY(beginSaving());
    typeName("Left");
    QTest::mouseClick(m_host->outlet<QPushButton>("cancelSaveButton"), Qt::LeftButton);
    QVERIFY(beginSaving());
    QCOMPARE(m_name->text(), QString());
    QVERIFY(!m_save->isEnabled());
    QVERIFY(m_name->hasFocus());
    QCOMPARE(m_saveSheet->windowModality(), Qt::WindowModal);
}

void tst_ShortcutEditorPresets::buttonNeedsAName()
{
    QVERIFY(beginSaving());
    m_host->type(Qt::Key_Return); // no name yet
    QVERIFY(m_saveSheet->isVisible());
    typeName("A");
    QVERIFY(m_save->isEnabled());
    m_host->type(Qt::Key_Backspace);
    QVERIFY(!m_save->isEnabled());
}

void tst_ShortcutEditorPresets::wrongNamesAreRefusedKeyByKey_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("name");
    QTest::newRow("dot") << ".a"
                         << "a";
    QTest::newRow("underscore") << "_current"
                                << "current";
    QTest::newRow("slash") << "a/b/c"
                           << "abc";
    QTest::newRow("all") << "._/x._/y"
                         << "x._y";
}

void tst_ShortcutEditorPresets::wrongNamesAreRefusedKeyByKey()
{
    QFETCH(QString, typed);
    QVERIFY(beginSaving());
    typeName(typed);
    QTEST(m_name->text(), "name");
}

void tst_ShortcutEditorPresets::refusalIsTold()
{
    QVERIFY(beginSaving());
    const auto *const rule = m_host->outlet<QLabel>("saveShortcutRuleText");
    typeName("a");
    QCOMPARE(rule->accessibleName(), QString());
    typeName("/");
    QCOMPARE(rule->accessibleName(), rule->text());
    QVERIFY(rule->isVisible());
    QCOMPARE(m_host->outlet<QLabel>("saveShortcutLabel")->buddy(), m_name);
}

void tst_ShortcutEditorPresets::presetIsSaved()
{
    m_host->at(0, 0)->setKey(QWShortcutKey('k', 0));
    QVERIFY(beginSaving());
    typeName("Mine & Yours");
    m_host->type(Qt::Key_Return); // the default button
    QVERIFY(!m_saveSheet->isVisible());
    QCOMPARE(m_host->system.readPropertyList(m_host->system.path("Mine & Yours.plist")).toList(),
             m_host->registry().changedShortcuts());
    QVERIFY(titlesOf(menu()).contains("Mine & Yours"));
}

void tst_ShortcutEditorPresets::cancelSavesNothing()
{
    QVERIFY(beginSaving());
    typeName("Mine");
    QTest::mouseClick(m_host->outlet<QPushButton>("cancelSaveButton"), Qt::LeftButton);
    QVERIFY(!m_saveSheet->isVisible());
    QVERIFY(!titlesOf(menu()).contains("Mine"));
}

void tst_ShortcutEditorPresets::escapeSavesNothing()
{
    QVERIFY(beginSaving());
    typeName("Mine");
    m_host->type(Qt::Key_Escape);
    QVERIFY(!m_saveSheet->isVisible());
    QVERIFY(m_host->window()->isVisible());
    QVERIFY(!titlesOf(menu()).contains("Mine"));
}

void tst_ShortcutEditorPresets::typingANameFiresNoShortcut()
{
    QVERIFY(beginSaving());
    m_host->type(Qt::Key_P);
    QCOMPARE(m_name->text().toLower(), QString("p"));
    QCOMPARE(m_host->receiver.sent, QStringList());
}

void tst_ShortcutEditorPresets::replacingIsAsked()
{
    QVERIFY(beginSaving());
    typeName("Left Hand");
    m_host->system.alerts.answerWith({"Cancel"});
    bool wasUp = true;
    m_host->system.alerts.whileShown = [&] { wasUp = m_saveSheet->isVisible(); };
    QTest::mouseClick(m_save, Qt::LeftButton);
    QCOMPARE(m_host->system.alerts.shown, QStringList{"“Left Hand” already exists. Do you want to replace it?"});
    QVERIFY(!wasUp); // the sheet is closed first
    QCOMPARE(m_host->system.readPropertyList(m_host->system.path("Left Hand.plist")).toList().size(), 1);
}

void tst_ShortcutEditorPresets::filePanelGivesTheKeyboardBack_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<int>("code");
    for (const char *const command : {"Import…", "Export…"}) {
        QTest::addRow("%s, OK", command) << command << platform::FilePanels::OK;
        QTest::addRow("%s, Cancel", command) << command << platform::FilePanels::Cancel;
    }
}

/// The panel may be the desktop's own, of which Qt knows no window; the desktop goes on with the main window.
void tst_ShortcutEditorPresets::filePanelGivesTheKeyboardBack()
{
    QFETCH(QString, command);
    QFETCH(int, code);
    QMainWindow main;
    main.show();
    choose(command);
    m_host->window()->activateWindow(); // the menu has gone
    QVERIFY(EditorHost::becomesKey(*m_host->window()));
    main.activateWindow();
    QVERIFY(EditorHost::becomesKey(main));
    const QString path = m_host->system.real("~/Mine.qwshortcuts");
    m_host->system.writePropertyList(path, QVariantList());
    if (command.startsWith("Import"))
        m_host->system.filePanels.endOpen(code, {path});
    else
        m_host->system.filePanels.endSave(code, path);
    QVERIFY(EditorHost::becomesKey(*m_host->window()));
}

QW_TEST_MAIN(tst_ShortcutEditorPresets)
#include "tst_ShortcutEditorPresets.moc"

#include "CaptureSheetHost.h"

#include "fakes/QWTestMain.h"

#include <QWPlatform/appkit/MenuItem.h>

#include <QLineEdit>
#include <QMenu>

namespace
{
/// All that a user reads, in the host's language: each between brackets.
const QStringList texts{
    "Keyboard Shortcuts",
    "Search",
    "&Presets",
    "Set Shortcut",
    "OK",
    "Cancel",
    "Clear",
    "Clear Other",
    "Save Preset",
    "&Save",
    "&Name of the preset:",
    "Press Escape twice to cancel, or hold the keys for a second to set them.",
    "A name begins with neither “.” nor “_” and holds no “/”.",
    "Save Preset…",
    "Import…",
    "Export…",
    "Reset to Factory Defaults…",
    " Menu",
    "[space]",
    "Enter the key combination you would like to use as a shortcut for “%@”...",
    "Sorry, that key combination is reserved.",
    "Sorry, that key combination is in use by '%@'.",
    "Are you sure you want to reset your keyboard shortcuts to the factory defaults?",
    "This action is not undoable.",
    "Reset",
    "“%@” already exists. Do you want to replace it?",
    "A preset with the same name already exists. Replacing it will overwrite its current contents.",
    "Replace",
    "No shortcut is named “%@”.",
};

QString translated(const QString &text)
{
    return "<" + text + ">";
}

/// The host's table of texts.
QByteArray table()
{
    QString lines;
    for (const QString &text : texts)
        lines += '"' + text + "\" = \"" + translated(text) + "\";\n";
    return lines.toUtf8();
}

/// A host in another language, with the editor open.
struct TranslatedHost : EditorHost
{
    TranslatedHost()
    {
        system.addHostResource("en.lproj/Localizable.strings", table());
        isOpen = open();
    }

    QString textOf(const char *label) const { return outlet<QLabel>(label)->text(); }
    QString titleOf(const char *button) const { return outlet<QPushButton>(button)->text(); }

    bool isOpen = false;
};
} // namespace

/// Texts come from the host's table first, and are filled then.
class tst_ShortcutTexts : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void windowIsTranslated();
    void presetCommandsAreTranslated();
    void rowsAreTranslated();
    void captureSheetIsTranslated();
    void saveSheetIsTranslated();
    void alertsAreTranslated();
};

void tst_ShortcutTexts::windowIsTranslated()
{
    const TranslatedHost host;
    QVERIFY(host.isOpen);
    QCOMPARE(host.window()->windowTitle(), translated("Keyboard Shortcuts"));
    QCOMPARE(host.titleOf("presetsPopup"), translated("&Presets"));
    QCOMPARE(host.outlet<QLineEdit>("searchText")->placeholderText(), translated("Search"));
    host.outlet<QLineEdit>("searchText")->setText("100%@");
    QCOMPARE(host.outline()->accessibleDescription(), translated("No shortcut is named “100%@”."));
}

void tst_ShortcutTexts::presetCommandsAreTranslated()
{
    const TranslatedHost host;
    QVERIFY(host.isOpen);
    QStringList titles;
    for (const QAction *const item : host.editor()->presetsMenu()->actions())
        if (!item->isSeparator())
            titles.append(platform::titleOf(*item));
    QCOMPARE(titles, (QStringList{translated("Save Preset…"), translated("Import…"), translated("Export…"),
                                  translated("Reset to Factory Defaults…")}));
}

void tst_ShortcutTexts::rowsAreTranslated()
{
    const TranslatedHost host;
    QVERIFY(host.isOpen);
    QCOMPARE(host.group(0).data().toString(), QString("Transport"));
    QCOMPARE(host.group(1).data().toString(), "Edit" + translated(" Menu"));
    host.at(0, 0)->setKey(QWShortcutKey(' ', EditorHost::shift));
    QCOMPARE(host.shortcut(0, 0, EditorHost::Column::Shortcut).data().toString(), "⇧" + translated("[space]"));
}

void tst_ShortcutTexts::captureSheetIsTranslated()
{
    const TranslatedHost host;
    QVERIFY(host.isOpen && host.edit(0, 0));
    QCOMPARE(host.sheet()->windowTitle(), translated("Set Shortcut"));
    QCOMPARE(host.textOf("setShortcutIntroText"),
             translated("Enter the key combination you would like to use as a shortcut for “Play”..."));
    QCOMPARE(host.textOf("setShortcutHintText"),
             translated("Press Escape twice to cancel, or hold the keys for a second to set them."));
    QCOMPARE(host.titleOf("okButton"), translated("OK"));
    QCOMPARE(host.titleOf("cancelButton"), translated("Cancel"));
    QCOMPARE(host.titleOf("clearButton"), translated("Clear"));
    EditorHost::type(Qt::Key_H, Qt::ControlModifier);
    QCOMPARE(host.textOf("setShortcutOutroText"), translated(CaptureSheetHost::reserved));
    EditorHost::type(Qt::Key_X, Qt::ControlModifier);
    QCOMPARE(host.textOf("setShortcutOutroText"), translated(CaptureSheetHost::inUse("Cut")));
    EditorHost::press(Qt::Key_Alt);
    QCOMPARE(host.titleOf("clearButton"), translated("Clear Other"));
}

void tst_ShortcutTexts::saveSheetIsTranslated()
{
    const TranslatedHost host;
    QVERIFY(host.isOpen);
    const auto *const name = host.outlet<QLineEdit>("saveShortcutText");
    QCOMPARE(name->window()->windowTitle(), translated("Save Preset"));
    QCOMPARE(host.textOf("saveShortcutLabel"), translated("&Name of the preset:"));
    QCOMPARE(host.textOf("saveShortcutRuleText"),
             translated("A name begins with neither “.” nor “_” and holds no “/”."));
    QCOMPARE(host.titleOf("saveShortcutButton"), translated("&Save"));
    QCOMPARE(host.titleOf("cancelSaveButton"), translated("Cancel"));
}

void tst_ShortcutTexts::alertsAreTranslated()
{
    const TranslatedHost host;
    QVERIFY(host.isOpen);
    host.system.alerts.answerWith({translated("Cancel"), translated("Cancel")});
    host.registry().loadFactoryPreset(nullptr);
    host.outlet<QLineEdit>("saveShortcutText")->setText("100%@");
    host.system.writePropertyList(host.system.path("100%@.plist"), QVariantList());
    host.registry().saveShortcutPanelDidEnd(1);
    const platform::Alert &reset = host.system.alerts.alerts.at(0);
    QCOMPARE(reset.messageText,
             translated("Are you sure you want to reset your keyboard shortcuts to the factory defaults?"));
    QCOMPARE(reset.informativeText, translated("This action is not undoable."));
    QCOMPARE(reset.buttons, (QStringList{translated("Reset"), translated("Cancel")}));
    const platform::Alert &replace = host.system.alerts.alerts.at(1);
    QCOMPARE(replace.messageText, translated("“100%@” already exists. Do you want to replace it?"));
    QCOMPARE(replace.informativeText, translated("A preset with the same name already exists. Replacing it will "
                                                 "overwrite its current contents."));
    QCOMPARE(replace.buttons, (QStringList{translated("Replace"), translated("Cancel")}));
}

QW_TEST_MAIN(tst_ShortcutTexts)
#include "tst_ShortcutTexts.moc"

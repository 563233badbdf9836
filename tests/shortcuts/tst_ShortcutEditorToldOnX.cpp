#include "CaptureSheetHost.h"
#include "ScreenReader.h"

#include <QWBase/QWApplication.h>

#include <QAbstractButton>
#include <QAccessible>

/// What a screen reader is told of the editor.
class tst_ShortcutEditorToldOnX : public QObject
{
    Q_OBJECT

public:
    explicit tst_ShortcutEditorToldOnX(ScreenReader &reader)
        : m_reader(reader)
    {
    }

private Q_SLOTS:
    void initTestCase() { QVERIFY(m_reader.listen()); }
    void init() { ScreenReader::forget(); }
    void panelIsAWindow();
    void firstRowThatHasTheFocusSaysItself();
    void everyRowSaysItself();
    void changedRowSaysItself();
    void rowSaysItselfWhenTheKeysComeBack();
    void capturedKeyIsSaid();
    void whatIsClearedIsSaid();
    void buttonsHaveNames();

private:
    ScreenReader &m_reader;
};

void tst_ShortcutEditorToldOnX::panelIsAWindow()
{
    const CaptureSheetHost host;
    QVERIFY(host.isOpen);
    const QAccessibleInterface *const window = QAccessible::queryAccessibleInterface(host.window());
    QCOMPARE(window->role(), QAccessible::Window);
    QCOMPARE(window->text(QAccessible::Name), QString("Keyboard Shortcuts"));
    QCOMPARE(QAccessible::queryAccessibleInterface(host.sheet())->role(), QAccessible::Dialog);
}

void tst_ShortcutEditorToldOnX::firstRowThatHasTheFocusSaysItself()
{
    const CaptureSheetHost host;
    QVERIFY(host.isOpen);
    QTRY_COMPARE(ScreenReader::focused(), QString("Transport, partly on"));
}

void tst_ShortcutEditorToldOnX::everyRowSaysItself()
{
    const CaptureSheetHost host;
    QVERIFY(host.isOpen);
    host.outline()->expandAll();
    QTRY_VERIFY(!ScreenReader::focused().isEmpty());
    const QStringList rows{"Play, P, on", "Stop, S, off", "Record, no shortcut, on", "Edit Menu, on",
                           "Cut, Ctrl+X, on"};
    for (const QString &row : rows) {
        QVERIFY(XServer::act({"key", "Down"}));
        QTRY_COMPARE(ScreenReader::focused(), row);
    }
}

void tst_ShortcutEditorToldOnX::changedRowSaysItself()
{
    const CaptureSheetHost host;
    QVERIFY(host.isOpen);
    host.outline()->expandAll();
    host.outline()->setCurrentIndex(host.shortcut(0, 0));
    QVERIFY(XServer::act({"key", "space"}));
    QTRY_COMPARE(ScreenReader::renamed(), QString("Play, P, off"));
    QVERIFY(XServer::act({"key", "Delete"}));
    QTRY_COMPARE(ScreenReader::renamed(), QString("Play, no shortcut, off"));
}

void tst_ShortcutEditorToldOnX::rowSaysItselfWhenTheKeysComeBack()
{
    const CaptureSheetHost host;
    QVERIFY(host.isOpen && host.edit(0, 0));
    QVERIFY(XServer::act({"key", "k"}));
    QTRY_COMPARE(host.shown->text(), QString("K"));
    host.click(host.ok);
    QTRY_COMPARE(ScreenReader::focused(), QString("Play, K, on"));
}

void tst_ShortcutEditorToldOnX::capturedKeyIsSaid()
{
    const CaptureSheetHost host;
    QVERIFY(host.isOpen && host.edit(0, 0));
    QTRY_VERIFY(ScreenReader::focused().contains("“Play”") && ScreenReader::focused().contains("Press Escape twice"));
    QVERIFY(XServer::act({"key", "ctrl+alt+k"}));
    QTRY_VERIFY(ScreenReader::heard("Ctrl+Alt+K"));
    QVERIFY(XServer::act({"key", "ctrl+h"}));
    QTRY_VERIFY(ScreenReader::heard("Ctrl+H. " + host.reserved));
    QVERIFY(XServer::act({"key", "ctrl+x"}));
    QTRY_VERIFY(host.shown->accessibleName().startsWith("Ctrl+X. " + host.inUse("Cut")));
    QVERIFY(ScreenReader::heard(host.shown->accessibleName()));
}

void tst_ShortcutEditorToldOnX::whatIsClearedIsSaid()
{
    CaptureSheetHost host;
    QVERIFY(host.isOpen && host.edit(0, 0));
    host.click(host.clear);
    QVERIFY(ScreenReader::heard("No shortcut"));
    QVERIFY(XServer::act({"keydown", "ctrl+x"}));
    QTRY_COMPARE(host.outro->text(), host.inUse("Cut"));
    host.system.clock.advance(std::chrono::seconds(1));
    QTRY_VERIFY(host.clearOther->hasFocus());
    QVERIFY(XServer::act({"keyup", "ctrl+x"}));
    QVERIFY(XServer::act({"key", "Return"}));
    QTRY_VERIFY(host.shown->accessibleName().startsWith("Ctrl+X. The shortcut of “Cut” was cleared."));
    QVERIFY(ScreenReader::heard(host.shown->accessibleName()));
}

void tst_ShortcutEditorToldOnX::buttonsHaveNames()
{
    const CaptureSheetHost host;
    QVERIFY(host.isOpen);
    const QList<QAbstractButton *> buttons = host.window()->findChildren<QAbstractButton *>();
    QVERIFY(buttons.size() >= 8);
    for (QAbstractButton *const button : buttons)
        QVERIFY2(!QAccessible::queryAccessibleInterface(button)->text(QAccessible::Name).isEmpty(),
                 qPrintable(button->objectName()));
}

int main(int argc, char **argv)
{
    ScreenReader reader;
    QWApplication application(argc, argv);
    tst_ShortcutEditorToldOnX test(reader);
    QTEST_SET_MAIN_SOURCE_PATH
    return QTest::qExec(&test, argc, argv);
}

#include "tst_ShortcutEditorToldOnX.moc"

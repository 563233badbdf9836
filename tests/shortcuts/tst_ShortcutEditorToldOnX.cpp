#include "CaptureSheetHost.h"
#include "XServer.h"
#include "network/PrivateBus.h"

#include <QWBase/QWApplication.h>

#include <QAbstractButton>
#include <QAccessible>
#include <QDBusConnection>

/// Says where screen readers listen. Qt asks for it before it tells anybody anything.
class AccessibilityBus : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.a11y.Bus")

public Q_SLOTS:
    QString GetAddress() { return qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS"); }
};

namespace
{
QStringList focused; ///< Names of what a screen reader was told to have the focus, in order.
QStringList renamed; ///< New names.

QString last(const QStringList &names)
{
    return names.value(names.size() - 1);
}

void note(QAccessibleEvent *event)
{
    QAccessibleInterface *const object = event->accessibleInterface();
    if (event->type() == QAccessible::Focus && object)
        focused.append(object->text(QAccessible::Name));
    if (event->type() == QAccessible::NameChanged && object)
        renamed.append(object->text(QAccessible::Name));
}
} // namespace

/// What a screen reader is told of the editor.
class tst_ShortcutEditorToldOnX : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void panelIsAWindow();
    void firstRowThatHasTheFocusSaysItself();
    void everyRowSaysItself();
    void changedRowSaysItself();
    void rowSaysItselfWhenTheKeysComeBack();
    void capturedKeyIsSaid();
    void whatIsClearedIsSaid();
    void buttonsHaveNames();

private:
    AccessibilityBus m_bus;
};

void tst_ShortcutEditorToldOnX::initTestCase()
{
    QDBusConnection session = QDBusConnection::sessionBus();
    QVERIFY(session.registerObject("/org/a11y/bus", &m_bus, QDBusConnection::ExportAllSlots));
    QVERIFY(session.registerService("org.a11y.Bus"));
    QTRY_VERIFY(QAccessible::isActive());
    QAccessible::installUpdateHandler(&note);
}

void tst_ShortcutEditorToldOnX::init()
{
    focused.clear();
    renamed.clear();
}

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
    QTRY_COMPARE(last(focused), QString("Transport, partly on"));
}

void tst_ShortcutEditorToldOnX::everyRowSaysItself()
{
    const CaptureSheetHost host;
    QVERIFY(host.isOpen);
    host.outline()->expandAll();
    QTRY_VERIFY(!focused.isEmpty());
    const QStringList rows{"Play, P, on", "Stop, S, off", "Record, no shortcut, on", "Edit Menu, on",
                           "Cut, Ctrl+X, on"};
    for (const QString &row : rows) {
        QVERIFY(XServer::act({"key", "Down"}));
        QTRY_COMPARE(last(focused), row);
    }
}

void tst_ShortcutEditorToldOnX::changedRowSaysItself()
{
    const CaptureSheetHost host;
    QVERIFY(host.isOpen);
    host.outline()->expandAll();
    host.outline()->setCurrentIndex(host.shortcut(0, 0));
    QVERIFY(XServer::act({"key", "space"}));
    QTRY_COMPARE(last(renamed), QString("Play, P, off"));
    QVERIFY(XServer::act({"key", "Delete"}));
    QTRY_COMPARE(last(renamed), QString("Play, no shortcut, off"));
}

void tst_ShortcutEditorToldOnX::rowSaysItselfWhenTheKeysComeBack()
{
    const CaptureSheetHost host;
    QVERIFY(host.isOpen && host.edit(0, 0));
    QVERIFY(XServer::act({"key", "k"}));
    QTRY_COMPARE(host.shown->text(), QString("K"));
    host.click(host.ok);
    QTRY_COMPARE(last(focused), QString("Play, K, on"));
}

void tst_ShortcutEditorToldOnX::capturedKeyIsSaid()
{
    const CaptureSheetHost host;
    QVERIFY(host.isOpen && host.edit(0, 0));
    QTRY_VERIFY(last(focused).contains("“Play”") && last(focused).contains("Press Escape twice"));
    QVERIFY(XServer::act({"key", "ctrl+alt+k"}));
    QTRY_VERIFY(renamed.contains("Ctrl+Alt+K"));
    QVERIFY(XServer::act({"key", "ctrl+h"}));
    QTRY_VERIFY(renamed.contains("Ctrl+H. " + host.reserved));
    QVERIFY(XServer::act({"key", "ctrl+x"}));
    QTRY_VERIFY(host.shown->accessibleName().startsWith("Ctrl+X. " + host.inUse("Cut")));
    QVERIFY(renamed.contains(host.shown->accessibleName()));
}

void tst_ShortcutEditorToldOnX::whatIsClearedIsSaid()
{
    CaptureSheetHost host;
    QVERIFY(host.isOpen && host.edit(0, 0));
    host.click(host.clear);
    QVERIFY(renamed.contains("No shortcut"));
    QVERIFY(XServer::act({"key", "ctrl+x"}));
    QTRY_COMPARE(host.outro->text(), host.inUse("Cut"));
    QVERIFY(XServer::act({"keydown", "alt"}));
    QTRY_COMPARE(host.clear->text(), QString("Clear Other"));
    host.system.clock.advance(std::chrono::seconds(1));
    QTRY_VERIFY(renamed.contains("Ctrl+X. The other shortcut was cleared."));
    QVERIFY(XServer::act({"keyup", "alt"}));
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
    const XServer server;
    if (!server.isRunning())
        qFatal("Xvfb does not start");
    PrivateBus bus;
    if (!bus.start())
        qFatal("The bus does not start");
    qputenv("QT_LINUX_ACCESSIBILITY_ALWAYS_ON", "1"); // root too
    QWApplication application(argc, argv);
    tst_ShortcutEditorToldOnX test;
    QTEST_SET_MAIN_SOURCE_PATH
    return QTest::qExec(&test, argc, argv);
}

#include "tst_ShortcutEditorToldOnX.moc"

#include <QWPlatform/appkit/Panel.h>

#include <QAccessible>
#include <QApplication>
#include <QTest>

/// What a panel is to others.
class tst_Panel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isAWindowToScreenReaders();
};

/// Also in a second application object of one process, as tests make them.
void tst_Panel::isAWindowToScreenReaders()
{
    for (int i = 0; i < 2; ++i) {
        int argc = 1;
        char name[] = "host";
        char *argv[] = {name, nullptr};
        const QApplication application(argc, argv);
        platform::Panel panel;
        panel.setWindowTitle("Preferences");
        const QAccessibleInterface *const window = QAccessible::queryAccessibleInterface(&panel);
        QCOMPARE(window->role(), QAccessible::Window);
        QCOMPARE(window->text(QAccessible::Name), QString("Preferences"));
    }
}

QTEST_APPLESS_MAIN(tst_Panel)
#include "tst_Panel.moc"

#include "WindowSystem.h"

#include <QWBase/QWApplication.h>
#include <QWBase/application/ApplicationCategories.h>
#include <QWPlatform/appkit/events/PendingInput.h>

#include <fakes/FakeSystem.h>
#include <fakes/QWTestMain.h>

#include <QEventLoop>
#include <QKeyEvent>
#include <QLineEdit>
#include <QShortcut>
#include <QTest>

using platform::PendingInput;

namespace
{
/// As the splash screen does between two plug-ins.
void pumpWithoutInput()
{
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents | QEventLoop::ExcludeSocketNotifiers |
                                    QEventLoop::X11ExcludeTimers);
}

/// A window with a text that is typed into, and one shortcut.
class Window : public QLineEdit
{
public:
    Window()
    {
        show();
        activateWindow();
        m_isActive = QTest::qWaitForWindowActive(this);
        connect(new QShortcut(QKeySequence("Ctrl+J"), this), &QShortcut::activated, this, [this] { ++shortcuts; });
    }

    bool isReady() const { return m_isActive; }
    void type(const QString &text) const
    {
        for (const QChar letter : text)
            WindowSystem::type(windowHandle(), letter.unicode());
    }

    int shortcuts = 0;

private:
    bool m_isActive = false;
};

/// The keys that a look sees: "+S" goes down, "-S" comes up.
QStringList seen(PendingInput &input)
{
    QStringList keys;
    input.look([&](const QKeyEvent &event) {
        keys += QString((event.type() == QEvent::KeyPress ? "+" : "-") + QString(QChar(event.key())));
    });
    return keys;
}

QList<QEvent::Type> keysOfCategory; ///< What the application's own categories were shown.

bool noteKey(QWApplication &, QObject *, QEvent *event)
{
    if (event->type() == QEvent::KeyPress || event->type() == QEvent::ShortcutOverride)
        keysOfCategory += event->type();
    return false;
}
} // namespace

class tst_PendingInput : public QObject
{
    Q_OBJECT

private slots:
    void init() { keysOfCategory.clear(); }

    void keysAreSeenAndActLater()
    {
        PendingInput input;
        Window window;
        QVERIFY(window.isReady());
        window.type("s");
        WindowSystem::sendKey(window.windowHandle(), QEvent::KeyPress, Qt::Key_J, {}, Qt::ControlModifier);
        QCOMPARE(seen(input), QStringList({"+S", "-S", "+J"}));
        QCOMPARE(seen(input), QStringList()); // each once
        QCOMPARE(window.text(), QString());
        QCOMPARE(window.shortcuts, 0);
        QCOMPARE(keysOfCategory, QList<QEvent::Type>());
        QTRY_COMPARE(window.shortcuts, 1);
        QCOMPARE(window.text(), QString("s"));
        QVERIFY(!keysOfCategory.isEmpty());
    }

    void nothingActsBetweenTwoLooks()
    {
        PendingInput input;
        Window window;
        QVERIFY(window.isReady());
        window.type("a");
        QCOMPARE(seen(input).size(), 2);
        pumpWithoutInput();
        window.type("b");
        pumpWithoutInput();
        QCOMPARE(seen(input), QStringList({"+B", "-B"}));
        pumpWithoutInput();
        QCOMPARE(window.text(), QString());
        QTRY_COMPARE(window.text(), QString("ab"));
    }

    void whatComesLaterActsLater()
    {
        PendingInput input;
        Window window;
        QVERIFY(window.isReady());
        window.type("abc");
        QCOMPARE(seen(input).size(), 6);
        window.type("def"); // waits in the window system's queue, which the event loop may look at first
        QTRY_COMPARE(window.text(), QString("abcdef"));
    }

    void keyThatOpensADialogLeavesTheOthersToIt()
    {
        PendingInput input;
        Window window;
        QVERIFY(window.isReady());
        QString textInside;
        connect(&window, &QLineEdit::textEdited, &window, [&](const QString &text) {
            if (text != "a")
                return;
            QEventLoop loop;
            connect(&window, &QLineEdit::textEdited, &loop, [&](const QString &more) {
                textInside = more;
                if (more == "abc")
                    loop.quit();
            });
            loop.exec();
        });
        window.type("abc");
        QCOMPARE(seen(input).size(), 6);
        QTRY_COMPARE(textInside, QString("abc"));
        QCOMPARE(window.text(), QString("abc"));
    }

    void keysOfAWindowThatHasGoneGoWithIt()
    {
        PendingInput input;
        Window other;
        {
            Window window;
            QVERIFY(window.isReady());
            window.type("a");
            QCOMPARE(seen(input).size(), 2);
        }
        other.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&other));
        other.type("b");
        QTRY_COMPARE(other.text(), QString("b"));
    }

    void keysForAWindowBehindADialogAreDropped()
    {
        PendingInput input;
        Window dialog;
        dialog.hide();
        dialog.setWindowModality(Qt::ApplicationModal);
        Window window;
        QVERIFY(window.isReady());
        window.type("a");
        QCOMPARE(seen(input).size(), 2);
        dialog.show();
        dialog.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&dialog));
        dialog.type("b");
        QTRY_COMPARE(dialog.text(), QString("b"));
        QCOMPARE(window.text(), QString());
    }

    void lookWithinALookSeesNothing()
    {
        PendingInput input;
        PendingInput other;
        Window window;
        QVERIFY(window.isReady());
        window.type("a");
        QStringList inside;
        input.look([&](const QKeyEvent &) { inside += seen(input) + seen(other); });
        QCOMPARE(inside, QStringList());
        QTRY_COMPARE(window.text(), QString("a"));
    }
};

int main(int argc, char **argv)
{
    qw::registerCategory({.name = "tst_PendingInput", .sendEvent = noteKey});
    FakeSystem system;
    const platform::SystemScope current(system);
    QWApplication application(argc, argv);
    tst_PendingInput test;
    QTEST_SET_MAIN_SOURCE_PATH
    return qwtest::run(test, argc, argv);
}

#include "tst_PendingInput.moc"

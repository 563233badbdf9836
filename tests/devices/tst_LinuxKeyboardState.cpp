#include "appkit/WindowSystem.h"

#include <QWPlatform/linux/desktop/LinuxKeyboardState.h>

#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QProcess>
#include <QTest>
#include <QWidget>

using namespace platform;

namespace
{
KeyMap mapOf(std::initializer_list<int> codes)
{
    KeyMap map{};
    for (const int code : codes)
        map[static_cast<std::size_t>(code / 8)] |= static_cast<quint8>(1 << (code % 8));
    return map;
}

/// An X server without a screen, and what is done to its keyboard.
class XServer
{
public:
    ~XServer()
    {
        m_server.terminate();
        m_server.waitForFinished();
    }

    /// False when it does not come up.
    bool start()
    {
        // The server picks a free display and tells it on its standard output.
        m_server.start("Xvfb", {"-displayfd", "1", "-screen", "0", "320x240x24", "-nolisten", "tcp", "-noreset"});
        if (!m_server.waitForReadyRead())
            return false;
        m_display = ":" + QString::fromUtf8(m_server.readLine()).trimmed();
        return true;
    }

    QProcessEnvironment environment() const
    {
        auto environment = QProcessEnvironment::systemEnvironment();
        environment.insert("DISPLAY", m_display);
        environment.insert("QT_QPA_PLATFORM", "xcb");
        return environment;
    }

    bool act(const QStringList &arguments) const
    {
        QProcess tool;
        tool.setProcessEnvironment(environment());
        tool.start("xdotool", arguments);
        return tool.waitForFinished() && tool.exitCode() == 0;
    }

private:
    QProcess m_server;
    QString m_display;
};
} // namespace

class tst_LinuxKeyboardState : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void nothingIsHeldAtFirst();
    void keysHeldBeforeTheWatchAreNotKnown();
    void eventsTellWhatIsHeld();
    void physicalKeyCountsWhereItIsKnown();
    void repeatsChangeNothing();
    void eventsThatReachNobodyCountToo();
    void keysThatWaitCountAndActLater();
    void keysAreForgottenWhenTheApplicationIsLeft();
    void codesOfTheKeys_data();
    void codesOfTheKeys();
    void xServerIsAsked();
};

void tst_LinuxKeyboardState::nothingIsHeldAtFirst()
{
    LinuxKeyboardState keyboard;
    QVERIFY(keyboard.keyMap() == KeyMap{});
}

void tst_LinuxKeyboardState::keysHeldBeforeTheWatchAreNotKnown()
{
    LinuxKeyboardState keyboard;
    QWidget window;
    QTest::keyPress(&window, Qt::Key_S);
    QVERIFY(keyboard.keyMap() == KeyMap{}); // begins to watch
    QTest::keyPress(&window, Qt::Key_X);
    QVERIFY(keyboard.keyMap() == mapOf({7}));
    keyboard.startWatching();
    QVERIFY(keyboard.keyMap() == mapOf({7}));
}

void tst_LinuxKeyboardState::eventsTellWhatIsHeld()
{
    LinuxKeyboardState keyboard;
    keyboard.startWatching();
    QWidget window;
    QTest::keyPress(&window, Qt::Key_S);
    QVERIFY(keyboard.keyMap() == mapOf({1}));
    QCOMPARE(int(keyboard.keyMap()[0]), 2);
    QTest::keyPress(&window, Qt::Key_X);
    QVERIFY(keyboard.keyMap() == mapOf({1, 7}));
    QTest::keyRelease(&window, Qt::Key_S);
    QVERIFY(keyboard.keyMap() == mapOf({7}));
    QTest::keyRelease(&window, Qt::Key_X);
    QVERIFY(keyboard.keyMap() == KeyMap{});
}

void tst_LinuxKeyboardState::physicalKeyCountsWhereItIsKnown()
{
    LinuxKeyboardState keyboard;
    keyboard.startWatching();
    QWidget window;
    // The key that is S on a US keyboard sends O on a Dvorak one: scan code 31 + 8.
    QKeyEvent press(QEvent::KeyPress, Qt::Key_O, Qt::NoModifier, 39, 0, 0, "o");
    QCoreApplication::sendEvent(&window, &press);
    QVERIFY(keyboard.keyMap() == mapOf({1}));
}

void tst_LinuxKeyboardState::repeatsChangeNothing()
{
    LinuxKeyboardState keyboard;
    keyboard.startWatching();
    QWidget window;
    QTest::keyPress(&window, Qt::Key_S);
    QKeyEvent release(QEvent::KeyRelease, Qt::Key_S, Qt::NoModifier, "s", true);
    QCoreApplication::sendEvent(&window, &release);
    QVERIFY(keyboard.keyMap() == mapOf({1}));
}

void tst_LinuxKeyboardState::eventsThatReachNobodyCountToo()
{
    LinuxKeyboardState keyboard;
    const QKeyEvent press(QEvent::KeyPress, Qt::Key_S, Qt::NoModifier, "s");
    keyboard.noteKeyEvent(press);
    QVERIFY(keyboard.keyMap() == KeyMap{}); // nobody watched yet
    keyboard.noteKeyEvent(press);
    keyboard.noteKeyEvent(press);
    QVERIFY(keyboard.keyMap() == mapOf({1}));
    keyboard.noteKeyEvent(QKeyEvent(QEvent::KeyRelease, Qt::Key_S, Qt::NoModifier, "s"));
    QVERIFY(keyboard.keyMap() == KeyMap{});
}

// As during a scan, which delivers nothing.
void tst_LinuxKeyboardState::keysThatWaitCountAndActLater()
{
    LinuxKeyboardState keyboard;
    keyboard.startWatching();
    QLineEdit window;
    window.show();
    window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    WindowSystem::sendKey(window.windowHandle(), QEvent::KeyPress, Qt::Key_S, "s");
    QVERIFY(keyboard.keyMap() == mapOf({1}));
    QCOMPARE(window.text(), QString());
    WindowSystem::sendKey(window.windowHandle(), QEvent::KeyRelease, Qt::Key_S, "s");
    WindowSystem::sendKey(window.windowHandle(), QEvent::KeyPress, Qt::Key_X, "x");
    QVERIFY(keyboard.keyMap() == mapOf({7}));
    QTRY_COMPARE(window.text(), QString("sx"));
    QVERIFY(keyboard.keyMap() == mapOf({7}));
}

void tst_LinuxKeyboardState::keysAreForgottenWhenTheApplicationIsLeft()
{
    LinuxKeyboardState keyboard;
    keyboard.startWatching();
    QWidget window;
    QTest::keyPress(&window, Qt::Key_S);
    QEvent left(QEvent::ApplicationStateChange);
    QCoreApplication::sendEvent(qApp, &left);
    QVERIFY(keyboard.keyMap() == KeyMap{});
}

void tst_LinuxKeyboardState::codesOfTheKeys_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("code");
    const QByteArray first = "ASDFHGZXCV BQWERYT123465=97-80]OU[IP LJ'K;\\,/NM.";
    for (int code = 0; code < first.size(); ++code) // gaps: a key of other keyboards, and Return
        if (first[code] != ' ')
            QTest::addRow("%c", first[code]) << int(static_cast<uchar>(first[code])) << code;
    QTest::newRow("Return") << int(Qt::Key_Return) << 0x24;
    QTest::newRow("Tab") << int(Qt::Key_Tab) << 0x30;
    QTest::newRow("Space") << int(Qt::Key_Space) << 0x31;
    QTest::newRow("Backspace") << int(Qt::Key_Backspace) << 0x33;
    QTest::newRow("Escape") << int(Qt::Key_Escape) << 0x35;
    QTest::newRow("Shift") << int(Qt::Key_Shift) << 0x38;
    QTest::newRow("F1") << int(Qt::Key_F1) << 0x7A;
    QTest::newRow("F12") << int(Qt::Key_F12) << 0x6F;
    QTest::newRow("Up") << int(Qt::Key_Up) << 0x7E;
}

void tst_LinuxKeyboardState::codesOfTheKeys()
{
    QFETCH(int, key);
    QFETCH(int, code);
    LinuxKeyboardState keyboard;
    keyboard.startWatching();
    QWidget window;
    QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier);
    QCoreApplication::sendEvent(&window, &press);
    QVERIFY(keyboard.keyMap() == mapOf({code}));
}

void tst_LinuxKeyboardState::xServerIsAsked()
{
    XServer server;
    QVERIFY2(server.start(), "Xvfb is needed");
    QProcess probe;
    probe.setProcessEnvironment(server.environment());
    probe.start(QW_HELD_KEYS_PROBE, QStringList());
    QVERIFY(probe.waitForReadyRead());
    QCOMPARE(probe.readLine().trimmed(), QByteArray("xcb"));
    const auto held = [&] {
        probe.write("?\n");
        return probe.waitForReadyRead() ? QByteArray::fromHex(probe.readLine().trimmed()) : QByteArray("none");
    };
    const auto bytes = [](const KeyMap &map) {
        return QByteArray(reinterpret_cast<const char *>(map.data()), static_cast<qsizetype>(map.size()));
    };

    QCOMPARE(held(), bytes(KeyMap{}));
    QVERIFY2(server.act({"keydown", "s"}), "xdotool is needed");
    QCOMPARE(held(), bytes(mapOf({1})));
    QVERIFY(server.act({"keydown", "a"}));
    QVERIFY(server.act({"keydown", "Shift_L"}));
    QCOMPARE(held(), bytes(mapOf({0, 1, 0x38})));
    QVERIFY(server.act({"keyup", "s", "keyup", "a", "keyup", "Shift_L"}));
    QCOMPARE(held(), bytes(KeyMap{}));
    probe.closeWriteChannel();
    QVERIFY(probe.waitForFinished());
}

QTEST_MAIN(tst_LinuxKeyboardState)
#include "tst_LinuxKeyboardState.moc"

#include "KeyDispatchTest.h"

namespace
{
constexpr quint32 command = 0x100000;
} // namespace

void KeyDispatchTest::routes()
{
    QTest::addColumn<Route>("route");
    QTest::newRow("window") << Route::Window;
    QTest::newRow("widget") << Route::Widget;
    QTest::newRow("sent") << Route::Sent;
    if (onX())
        QTest::newRow("X") << Route::X;
}

void KeyDispatchTest::init()
{
    QVariantList keys{shortcutState("Play", "play:", 'p'), shortcutState("Stop", "stop:", 's'),
                      shortcutState("Save", "save:", ' ')};
    for (const char16_t arrow : {0xf700, 0xf701, 0xf702, 0xf703, 0xf708})
        keys.append(shortcutState("Save", "save:", arrow));
    m_system = std::make_unique<ShortcutSystem>(QVariantList{
        groupState("Keys", keys), groupState("Transport", {shortcutState("Play", "play:", 'p', command, 1)}, true)});
    m_receiver = std::make_unique<ShortcutReceiver>();
    m_window = std::make_unique<HostWindow>();
    QVERIFY(activate(*m_window));
    QWKeyboardShortcuts::loadShortcuts();
}

void KeyDispatchTest::cleanup()
{
    m_window.reset();
    m_receiver.reset();
    m_system.reset();
}

int runKeyDispatchTest(int argc, char **argv, bool isOnX, const std::function<std::unique_ptr<QObject>()> &make)
{
    std::unique_ptr<XServer> server;
    if (isOnX) {
        server = std::make_unique<XServer>();
        if (!server->isRunning())
            qFatal("Xvfb does not start");
    }
    QWApplication application(argc, argv);
    const auto test = make();
    return QTest::qExec(test.get(), argc, argv);
}

#include "controllers/ScrollWheelFixture.h"
#include "shortcuts/XServer.h"

#include <QWPlatform/linux/desktop/LinuxKeyboardState.h>

#include <QApplication>
#include <QWheelEvent>

/// Keeps what the toolkit says and what is made of it.
class WheelView : public QWidget
{
public:
    QList<QPoint> angles;
    QList<platform::ScrollEvent> events;

protected:
    void wheelEvent(QWheelEvent *event) override
    {
        angles.append(event->angleDelta());
        events.append(*event);
    }
};

/// Wheel buttons of an X server.
class tst_ScrollEventOnX : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void wheelTurnsByItsOwnAxis_data();
    void wheelTurnsByItsOwnAxis();
    void capsLockIsAskedOfTheServer();

private:
    ScrollWheelFixture m_host;
    std::unique_ptr<WheelView> m_view;
};

void tst_ScrollEventOnX::init()
{
    m_view = std::make_unique<WheelView>();
    m_view->setGeometry(100, 100, 300, 200);
    m_view->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_view.get()));
    QVERIFY(XServer::act({"mousemove", "200", "200"}));
}

void tst_ScrollEventOnX::wheelTurnsByItsOwnAxis_data()
{
    QTest::addColumn<QString>("key"); // held
    QTest::addColumn<QString>("button");
    QTest::addColumn<double>("x");
    QTest::addColumn<double>("y");
    QTest::addColumn<quint32>("flags");
    QTest::newRow("up") << ""
                        << "4" << 0.0 << 1.0 << 0u;
    QTest::newRow("down") << ""
                          << "5" << 0.0 << -1.0 << 0u;
    QTest::newRow("left") << ""
                          << "6" << 1.0 << 0.0 << 0u;
    QTest::newRow("right") << ""
                           << "7" << -1.0 << 0.0 << 0u;
    QTest::newRow("alt and up") << "alt"
                                << "4" << 0.0 << 1.0 << 0x80000u;
    QTest::newRow("alt and down") << "alt"
                                  << "5" << 0.0 << -1.0 << 0x80000u;
    QTest::newRow("alt and left") << "alt"
                                  << "6" << 1.0 << 0.0 << 0x80000u;
    QTest::newRow("alt and right") << "alt"
                                   << "7" << -1.0 << 0.0 << 0x80000u;
    QTest::newRow("shift and up") << "shift"
                                  << "4" << 0.0 << 1.0 << 0x20000u;
    QTest::newRow("control and up") << "ctrl"
                                    << "4" << 0.0 << 1.0 << 0x100000u;
    QTest::newRow("super and up") << "super"
                                  << "4" << 0.0 << 1.0 << 0x40000u;
}

void tst_ScrollEventOnX::wheelTurnsByItsOwnAxis()
{
    QFETCH(QString, key);
    QFETCH(QString, button);
    if (!key.isEmpty())
        QVERIFY(XServer::act({"keydown", key}));
    QVERIFY(XServer::act({"click", button}));
    const bool came = QTest::qWaitFor([this] { return !m_view->events.isEmpty(); });
    if (!key.isEmpty())
        QVERIFY(XServer::act({"keyup", key}));
    QVERIFY(came);
    QTEST(m_view->events.at(0).deltaX, "x");
    QTEST(m_view->events.at(0).deltaY, "y");
    QTEST(m_view->events.at(0).modifierFlags, "flags");
    const bool isSwapped = (m_view->angles.at(0).x() != 0) != (m_view->events.at(0).deltaX != 0);
    QCOMPARE(isSwapped, key == "alt"); // what there is to undo
}

void tst_ScrollEventOnX::capsLockIsAskedOfTheServer()
{
    platform::LinuxKeyboardState keyboard;
    QVERIFY(!keyboard.isCapsLockOn());
    QVERIFY(XServer::act({"key", "Caps_Lock"}));
    QTRY_VERIFY(keyboard.isCapsLockOn());
    QVERIFY(XServer::act({"key", "Caps_Lock"}));
    QTRY_VERIFY(!keyboard.isCapsLockOn());
}

int main(int argc, char **argv)
{
    const XServer server;
    if (!server.isRunning())
        qFatal("Xvfb does not start");
    QApplication application(argc, argv);
    tst_ScrollEventOnX test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_ScrollEventOnX.moc"

#include "LinuxReceiverTest.h"
#include "fakes/QWTestMain.h"

#include <random>

/// What the receiver sends, as its listeners hear it.
class tst_LinuxRemoteReceiverEvents : public LinuxReceiverTest
{
    Q_OBJECT

private Q_SLOTS:
    void keysBecomeButtons_data();
    void keysBecomeButtons();
    void eventsThatComeInPiecesAreReadWhole();
    void garbageMeansNothing();
    void burstIsReadWhole();
    void lostEventsAreMadeUpFor();
    void nothingToReadIsNoDisconnection();
    void disconnectionEndsHeldButtonsAndIsLogged_data();
    void disconnectionEndsHeldButtonsAndIsLogged();
    void lastListenerMayLeaveDuringACall();
};

void tst_LinuxRemoteReceiverEvents::keysBecomeButtons_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<QStringList>("shortPress");
    QTest::addColumn<QStringList>("hold");
    QTest::newRow("menu") << KEY_MENU << QStringList{"down 0", "up 0"} << QStringList{"down 0"};
    QTest::newRow("play") << KEY_PLAYPAUSE << QStringList{"down 1", "up 1"} << QStringList{"down 1"};
    QTest::newRow("centre") << KEY_ENTER << QStringList{"down 1", "up 1"} << QStringList{"down 1"};
    QTest::newRow("plus") << KEY_VOLUMEUP << QStringList{"down 2", "up 2"} << QStringList{"down 2", "up 2"};
    QTest::newRow("minus") << KEY_VOLUMEDOWN << QStringList{"down 3", "up 3"} << QStringList{"down 3", "up 3"};
    QTest::newRow("previous") << KEY_BACK << QStringList{"down 4", "up 4"} << QStringList{"down 4", "up 4"};
    QTest::newRow("next") << KEY_FORWARD << QStringList{"down 5", "up 5"} << QStringList{"down 5", "up 5"};
}

void tst_LinuxRemoteReceiverEvents::keysBecomeButtons()
{
    QFETCH(const int, code);
    QFETCH(const QStringList, shortPress);
    QFETCH(const QStringList, hold);
    plugIn();
    RemoteListener listener;
    remote().addListener(&listener);
    for (const int value : {1, 0})
        m_device->write(SocketReceiver::key(code, value));
    QTRY_COMPARE(listener.heard, shortPress);

    listener.heard.clear();
    for (const int value : {1, 2, 2, 0})
        m_device->write(SocketReceiver::key(code, value));
    m_device->write(SocketReceiver::key(KEY_VOLUMEUP, 1)); // tells that all before it was read
    QTRY_COMPARE(listener.heard, hold + QStringList("down 2"));
}

void tst_LinuxRemoteReceiverEvents::eventsThatComeInPiecesAreReadWhole()
{
    plugIn(SOCK_STREAM);
    RemoteListener listener;
    remote().addListener(&listener);
    const QByteArray press = SocketReceiver::key(KEY_VOLUMEUP, 1) + SocketReceiver::key(KEY_VOLUMEUP, 0);
    for (qsizetype cut = 1; cut < press.size(); ++cut) {
        listener.heard.clear();
        const int reads = m_device->reads;
        m_device->write(press.first(cut));
        QTRY_COMPARE(m_device->reads, reads + 1);
        QCOMPARE(listener.heard.size(), (cut >= 24 ? 1 : 0) + (cut >= 72 ? 1 : 0));
        m_device->write(press.mid(cut));
        QTRY_COMPARE(listener.heard, QStringList({"down 2", "up 2"}));
        QTRY_COMPARE(m_device->reads, reads + 2);
    }
}

void tst_LinuxRemoteReceiverEvents::garbageMeansNothing()
{
    plugIn();
    RemoteListener listener;
    remote().addListener(&listener);
    std::mt19937 random(2009);
    for (int i = 0; i < 2000; ++i) {
        QByteArray bytes(24, '\0');
        std::generate(bytes.begin(), bytes.end(), [&] { return char(random()); });
        bytes[16] = char(2 + random() % 250); // neither a report nor a key
        m_device->write(bytes);
        if (i % 50 == 0)
            QTRY_VERIFY(m_device->reads > i - 50);
    }
    m_device->write(SocketReceiver::event(EV_KEY, KEY_VOLUMEUP, 77));
    m_device->write(SocketReceiver::event(EV_KEY, 0xffff, 1));
    m_device->write(SocketReceiver::key(KEY_VOLUMEDOWN, 1));
    QTRY_COMPARE(listener.heard, QStringList("down 3"));
    QVERIFY(remote().isActive());
}

void tst_LinuxRemoteReceiverEvents::burstIsReadWhole()
{
    plugIn(SOCK_STREAM);
    RemoteListener listener;
    remote().addListener(&listener);
    QByteArray burst;
    for (int i = 0; i < 500; ++i)
        burst += SocketReceiver::event(EV_KEY, KEY_VOLUMEUP, 1) + SocketReceiver::event(EV_KEY, KEY_VOLUMEUP, 0);
    m_device->write(burst);
    QTRY_COMPARE(listener.heard.size(), 1000);
    QCOMPARE(listener.heard.count("up 2"), 500);
}

void tst_LinuxRemoteReceiverEvents::lostEventsAreMadeUpFor()
{
    plugIn();
    RemoteListener listener;
    remote().addListener(&listener);
    m_device->write(SocketReceiver::key(KEY_VOLUMEUP, 1));
    QTRY_COMPARE(listener.heard, QStringList("down 2"));

    m_device->heldKeys->set(KEY_VOLUMEDOWN);
    m_device->write(SocketReceiver::event(EV_SYN, SYN_DROPPED, 0) + SocketReceiver::event(EV_KEY, KEY_MENU, 1) +
                    SocketReceiver::event(EV_KEY, KEY_MENU, 0) + SocketReceiver::event(EV_SYN, SYN_REPORT, 0));
    QTRY_COMPARE(listener.heard, QStringList({"down 2", "up 2", "down 3"}));

    m_device->heldKeys.reset(); // the device does not tell
    m_device->write(SocketReceiver::event(EV_SYN, SYN_DROPPED, 0) + SocketReceiver::event(EV_SYN, SYN_REPORT, 0) +
                    SocketReceiver::key(KEY_VOLUMEDOWN, 0));
    QTRY_COMPARE(listener.heard, QStringList({"down 2", "up 2", "down 3", "up 3"}));
}

void tst_LinuxRemoteReceiverEvents::nothingToReadIsNoDisconnection()
{
    plugIn();
    RemoteListener listener;
    remote().addListener(&listener);
    m_device->write(SocketReceiver::key(KEY_VOLUMEUP, 1));
    for (const int error : {EAGAIN, EINTR}) {
        m_device->readError = error;
        const int reads = m_device->reads;
        QTRY_VERIFY(m_device->reads > reads);
    }
    m_device->readError = 0;
    QTRY_COMPARE(listener.heard, QStringList("down 2"));
    QCOMPARE(log(), QString());
}

void tst_LinuxRemoteReceiverEvents::disconnectionEndsHeldButtonsAndIsLogged_data()
{
    QTest::addColumn<int>("error");
    QTest::newRow("end of input") << 0;
    QTest::newRow("device gone") << ENODEV;
    QTest::newRow("input error") << EIO;
}

void tst_LinuxRemoteReceiverEvents::disconnectionEndsHeldButtonsAndIsLogged()
{
    QFETCH(const int, error);
    plugIn();
    RemoteListener listener;
    remote().addListener(&listener);
    m_device->write(SocketReceiver::key(KEY_VOLUMEUP, 1) + SocketReceiver::key(KEY_MENU, 1));
    QTRY_COMPARE(listener.heard, QStringList("down 2"));

    m_device->readError = error;
    m_device->unplug();
    QTRY_VERIFY(!remote().isActive());
    QCOMPARE(listener.heard, QStringList({"down 2", "up 2"}));
    QCOMPARE(log().count("The remote was disconnected"), 1);
    QCOMPARE(log().count('\n'), 1);
    QCOMPARE(m_device->openDescriptors, 0);
    QVERIFY(remote().hasListener(&listener));
}

void tst_LinuxRemoteReceiverEvents::lastListenerMayLeaveDuringACall()
{
    plugIn();
    RemoteListener listener;
    remote().addListener(&listener);
    listener.meanwhile = [&] { remote().removeListener(&listener); };
    m_device->write(SocketReceiver::key(KEY_VOLUMEUP, 1) + SocketReceiver::key(KEY_VOLUMEUP, 0));
    QTRY_COMPARE(listener.heard, QStringList("down 2"));
    QCOMPARE(m_device->openDescriptors, 0);

    listener.heard.clear();
    remote().addListener(&listener);
    m_device->write(SocketReceiver::key(KEY_VOLUMEDOWN, 1));
    m_device->unplug(); // the listener leaves before the disconnection is told
    QTRY_COMPARE(listener.heard, QStringList("down 3"));
    QVERIFY(!remote().isActive());
    QCOMPARE(log(), QString());
}

QW_TEST_MAIN(tst_LinuxRemoteReceiverEvents)
#include "tst_LinuxRemoteReceiverEvents.moc"

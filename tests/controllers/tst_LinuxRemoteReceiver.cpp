#include "ReceiverFolder.h"
#include "RemoteListener.h"
#include "SocketReceiver.h"

#include "fakes/FakeSystem.h"
#include "fakes/QWTestMain.h"

#include <QWPlatform/linux/LinuxRemoteReceiver.h>

#include <QRegularExpression>

#include <random>

using platform::LinuxRemoteReceiver;
using platform::System;

namespace
{
constexpr auto className = "AppleIRController";
constexpr auto cannotFind = "Finding the AppleIRController service failed";
} // namespace

/// The remote control over the real classes: folders stand for "/sys" and "/dev", a socket for the kernel's device.
class tst_LinuxRemoteReceiver : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void receiverIsFoundByItsNumbersOrItsDriver_data();
    void receiverIsFoundByItsNumbersOrItsDriver();
    void firstReceiverCounts();
    void otherClassesAreNotFound();
    void machineWithoutReceiverSaysSo();
    void receiverThatCannotBeOpenedSaysSo();
    void nodeThatIsNoInputDeviceCannotBeHeld();
    void receiverThatAnotherHoldsSaysSo();
    void deviceWithoutTheRemotesKeysSaysSo();
    void receiverIsHeldWhileAnyoneListens();
    void keysBecomeButtons_data();
    void keysBecomeButtons();
    void eventsThatComeInPiecesAreReadWhole();
    void garbageMeansNothing();
    void burstIsReadWhole();
    void lostEventsAreMadeUpFor();
    void nothingToReadIsNoDisconnection();
    void disconnectionEndsHeldButtonsAndIsLogged_data();
    void disconnectionEndsHeldButtonsAndIsLogged();
    void reconnectedReceiverIsFoundByTheNextNewListener();
    void lastListenerMayLeaveDuringACall();
    void ruleNamesTheSameDevices();

private:
    QWRemoteControl &remote() { return QWRemoteControl::remoteControl(); }
    void _plugIn(int socketType = SOCK_SEQPACKET);
    void _useRealCalls()
    {
        m_system->remoteReceiver.real = std::make_unique<LinuxRemoteReceiver>(m_folder->sys(), m_folder->dev());
    }
    QString _log() const
    {
        return QString::fromUtf8(m_system->readFile("~/Library/Logs/Quorwell/Test Host.log").value_or(""));
    }

    std::unique_ptr<FakeSystem> m_system;
    std::unique_ptr<System::Scope> m_scope;
    std::unique_ptr<ReceiverFolder> m_folder;
    std::shared_ptr<SocketReceiver> m_device;
};

void tst_LinuxRemoteReceiver::init()
{
    m_folder = std::make_unique<ReceiverFolder>();
    m_system = std::make_unique<FakeSystem>();
    m_scope = std::make_unique<System::Scope>(*m_system);
}

void tst_LinuxRemoteReceiver::cleanup()
{
    m_scope.reset();
    m_system.reset();
    QVERIFY(!m_device || m_device->openDescriptors == 0);
    m_device.reset();
    m_folder.reset();
}

/// From now on the machine has a receiver, which is a socket.
void tst_LinuxRemoteReceiver::_plugIn(int socketType)
{
    m_folder->addReceiver(5);
    m_device = std::make_shared<SocketReceiver>(socketType);
    m_system->remoteReceiver.real = std::make_unique<LinuxRemoteReceiver>(m_folder->sys(), m_folder->dev(), m_device);
}

void tst_LinuxRemoteReceiver::receiverIsFoundByItsNumbersOrItsDriver_data()
{
    QTest::addColumn<QByteArray>("vendor");
    QTest::addColumn<QByteArray>("product");
    QTest::addColumn<QString>("driver");
    QTest::addColumn<bool>("isFound");
    for (const QByteArray product : {"1440", "8240", "8241", "8242", "8243"})
        QTest::newRow(product.constData()) << QByteArray("05ac") << product << QString() << true;
    QTest::newRow("by the driver") << QByteArray("1234") << QByteArray("5678") << QString("appleir") << true;
    QTest::newRow("product before") << QByteArray("05ac") << QByteArray("823f") << QString("hid-generic") << false;
    QTest::newRow("product after") << QByteArray("05ac") << QByteArray("8244") << QString("hid-generic") << false;
    QTest::newRow("another vendor") << QByteArray("05ad") << QByteArray("8242") << QString("hid-generic") << false;
    QTest::newRow("no numbers") << QByteArray() << QByteArray() << QString() << false;
    QTest::newRow("garbage") << QByteArray("\xff zz") << QByteArray("8242x") << QString() << false;
}

void tst_LinuxRemoteReceiver::receiverIsFoundByItsNumbersOrItsDriver()
{
    QFETCH(const QByteArray, vendor);
    QFETCH(const QByteArray, product);
    QFETCH(const QString, driver);
    QFETCH(const bool, isFound);
    m_folder->addDevice(3, "046d", "c31c", "hid-generic");
    m_folder->addDevice(7, vendor, product, driver);
    LinuxRemoteReceiver receiver(m_folder->sys(), m_folder->dev());
    QCOMPARE(receiver.firstServiceMatching(className).value_or("none"), isFound ? m_folder->node(7) : QString("none"));
}

void tst_LinuxRemoteReceiver::firstReceiverCounts()
{
    m_folder->addReceiver(10);
    m_folder->addReceiver(2);
    LinuxRemoteReceiver receiver(m_folder->sys(), m_folder->dev());
    QCOMPARE(receiver.firstServiceMatching(className), m_folder->node(2));
}

void tst_LinuxRemoteReceiver::otherClassesAreNotFound()
{
    m_folder->addReceiver(2);
    LinuxRemoteReceiver receiver(m_folder->sys(), m_folder->dev());
    QVERIFY(!receiver.firstServiceMatching("AppleIRControllers"));
    QVERIFY(!receiver.firstServiceMatching(""));
}

void tst_LinuxRemoteReceiver::machineWithoutReceiverSaysSo()
{
    _useRealCalls();
    RemoteListener listener;
    QVERIFY(remote().addListener(&listener));
    QVERIFY(_log().contains(cannotFind));
    QVERIFY(!remote().isActive());
}

void tst_LinuxRemoteReceiver::receiverThatCannotBeOpenedSaysSo()
{
    m_folder->addReceiver(5); // without a node
    _useRealCalls();
    RemoteListener listener;
    QVERIFY(remote().addListener(&listener));
    QVERIFY(_log().contains("Creating the plugin for the remote failed"));
}

void tst_LinuxRemoteReceiver::nodeThatIsNoInputDeviceCannotBeHeld()
{
    m_folder->addReceiver(5);
    m_folder->addNode(5);
    _useRealCalls();
    RemoteListener listener;
    QVERIFY(remote().addListener(&listener));
    QVERIFY(_log().contains("Attempting to sieze the remote failed"));
}

void tst_LinuxRemoteReceiver::receiverThatAnotherHoldsSaysSo()
{
    _plugIn();
    m_device->canBeGrabbed = false;
    RemoteListener first;
    remote().addListener(&first);
    QVERIFY(_log().contains("Attempting to sieze the remote failed"));
    QCOMPARE(m_device->openDescriptors, 0);

    m_device->canBeGrabbed = true;
    RemoteListener second;
    remote().addListener(&second);
    QVERIFY(remote().isActive());
}

void tst_LinuxRemoteReceiver::deviceWithoutTheRemotesKeysSaysSo()
{
    _plugIn();
    m_device->ownKeys.reset();
    m_device->ownKeys.set(KEY_POWER);
    RemoteListener listener;
    remote().addListener(&listener);
    QVERIFY(_log().contains("Retrieving the remote interface elements failed"));
}

void tst_LinuxRemoteReceiver::receiverIsHeldWhileAnyoneListens()
{
    _plugIn();
    RemoteListener listener;
    remote().addListener(&listener);
    QCOMPARE(m_device->opened, QByteArrayList{QFile::encodeName(m_folder->node(5))});
    QVERIFY(m_device->isGrabbed);
    QVERIFY(remote().isActive());
    remote().removeListener(&listener);
    QVERIFY(!m_device->isGrabbed);
    QCOMPARE(m_device->openDescriptors, 0);
}

void tst_LinuxRemoteReceiver::keysBecomeButtons_data()
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

void tst_LinuxRemoteReceiver::keysBecomeButtons()
{
    QFETCH(const int, code);
    QFETCH(const QStringList, shortPress);
    QFETCH(const QStringList, hold);
    _plugIn();
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

void tst_LinuxRemoteReceiver::eventsThatComeInPiecesAreReadWhole()
{
    _plugIn(SOCK_STREAM);
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

void tst_LinuxRemoteReceiver::garbageMeansNothing()
{
    _plugIn();
    RemoteListener listener;
    remote().addListener(&listener);
    std::mt19937 random(2009);
    for (int i = 0; i < 2000; ++i) {
        QByteArray bytes(24, '\0');
        std::generate(bytes.begin(), bytes.end(), [&] { return char(random()); });
        bytes[16] = char(2 + random() % 250); // neither a report nor a key
        m_device->write(bytes);
        if (i % 50 == 0)
            QCoreApplication::processEvents();
        if (i % 50 == 0)
            QTRY_VERIFY(m_device->reads > i - 50);
    }
    m_device->write(SocketReceiver::event(EV_KEY, KEY_VOLUMEUP, 77));
    m_device->write(SocketReceiver::event(EV_KEY, 0xffff, 1));
    m_device->write(SocketReceiver::key(KEY_VOLUMEDOWN, 1));
    QTRY_COMPARE(listener.heard, QStringList("down 3"));
    QVERIFY(remote().isActive());
}

void tst_LinuxRemoteReceiver::burstIsReadWhole()
{
    _plugIn(SOCK_STREAM);
    RemoteListener listener;
    remote().addListener(&listener);
    QByteArray burst;
    for (int i = 0; i < 500; ++i)
        burst += SocketReceiver::event(EV_KEY, KEY_VOLUMEUP, 1) + SocketReceiver::event(EV_KEY, KEY_VOLUMEUP, 0);
    m_device->write(burst);
    QTRY_COMPARE(listener.heard.size(), 1000);
    QCOMPARE(listener.heard.count("up 2"), 500);
}

void tst_LinuxRemoteReceiver::lostEventsAreMadeUpFor()
{
    _plugIn();
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

void tst_LinuxRemoteReceiver::nothingToReadIsNoDisconnection()
{
    _plugIn();
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
    QCOMPARE(_log(), QString());
}

void tst_LinuxRemoteReceiver::disconnectionEndsHeldButtonsAndIsLogged_data()
{
    QTest::addColumn<int>("error");
    QTest::newRow("end of input") << 0;
    QTest::newRow("device gone") << ENODEV;
    QTest::newRow("input error") << EIO;
}

void tst_LinuxRemoteReceiver::disconnectionEndsHeldButtonsAndIsLogged()
{
    QFETCH(const int, error);
    _plugIn();
    RemoteListener listener;
    remote().addListener(&listener);
    m_device->write(SocketReceiver::key(KEY_VOLUMEUP, 1) + SocketReceiver::key(KEY_MENU, 1));
    QTRY_COMPARE(listener.heard, QStringList("down 2"));

    m_device->readError = error;
    m_device->unplug();
    QTRY_VERIFY(!remote().isActive());
    QCOMPARE(listener.heard, QStringList({"down 2", "up 2"}));
    QCOMPARE(_log().count("The remote was disconnected"), 1);
    QCOMPARE(_log().count('\n'), 1);
    QCOMPARE(m_device->openDescriptors, 0);
    QVERIFY(remote().hasListener(&listener));
}

void tst_LinuxRemoteReceiver::reconnectedReceiverIsFoundByTheNextNewListener()
{
    _plugIn();
    RemoteListener first;
    remote().addListener(&first);
    m_device->unplug();
    QTRY_VERIFY(!remote().isActive());

    RemoteListener second;
    remote().addListener(&second);
    QVERIFY(remote().isActive());
    m_device->write(SocketReceiver::key(KEY_VOLUMEUP, 1));
    QTRY_COMPARE(first.heard, QStringList("down 2"));
    QCOMPARE(second.heard, first.heard);
}

void tst_LinuxRemoteReceiver::lastListenerMayLeaveDuringACall()
{
    _plugIn();
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
    QCOMPARE(_log(), QString());
}

void tst_LinuxRemoteReceiver::ruleNamesTheSameDevices()
{
    QFile rule(QW_TOOLS_DIR "/70-quorwell-remote.rules");
    QVERIFY(rule.open(QIODevice::ReadOnly));
    const QString text = rule.readAll();
    const QRegularExpression numbers("ATTRS\\{id/vendor\\}==\"([^\"]*)\", ATTRS\\{id/product\\}==\"([^\"]*)\"");
    const auto match = numbers.match(text);
    QVERIFY(match.hasMatch());
    const QStringList products = match.captured(2).split('|');
    for (int number = 0; number < products.size(); ++number)
        m_folder->addDevice(number, match.captured(1).toLatin1(), products[number].toLatin1());
    for (int number = 0; number < products.size(); ++number) {
        LinuxRemoteReceiver receiver(m_folder->sys(), m_folder->dev());
        QCOMPARE(receiver.firstServiceMatching(className), m_folder->node(number));
        QVERIFY(QFile::remove(m_folder->sys() + "/class/input/event" + QString::number(number)));
    }
    QCOMPARE(products.size(), 5);
    QVERIFY(text.contains("DRIVERS==\"appleir\""));
}

QW_TEST_MAIN(tst_LinuxRemoteReceiver)
#include "tst_LinuxRemoteReceiver.moc"

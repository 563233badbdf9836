#include "LinuxReceiverTest.h"
#include "fakes/QWTestMain.h"

#include <QRegularExpression>

using platform::LinuxRemoteReceiver;

namespace
{
constexpr auto className = "AppleIRController";
constexpr auto cannotFind = "Finding the AppleIRController service failed";
} // namespace

/// The receiver is found, held and given back, or it is said why not.
class tst_LinuxRemoteReceiver : public LinuxReceiverTest
{
    Q_OBJECT

private Q_SLOTS:
    void receiverIsFoundByItsNumbersOrItsDriver_data();
    void receiverIsFoundByItsNumbersOrItsDriver();
    void firstReceiverCounts();
    void otherClassesAreNotFound();
    void ruleNamesTheSameDevices();
    void machineWithoutReceiverSaysSo();
    void receiverThatCannotBeOpenedSaysSo();
    void nodeThatIsNoInputDeviceCannotBeHeld();
    void receiverThatAnotherHoldsSaysSo();
    void deviceWithoutTheRemotesKeysSaysSo();
    void receiverIsHeldWhileAnyoneListens();
    void reconnectedReceiverIsFoundByTheNextNewListener();
};

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

void tst_LinuxRemoteReceiver::machineWithoutReceiverSaysSo()
{
    useRealCalls();
    RemoteListener listener;
    QVERIFY(remote().addListener(&listener));
    QVERIFY(log().contains(cannotFind));
    QVERIFY(!remote().isActive());
}

void tst_LinuxRemoteReceiver::receiverThatCannotBeOpenedSaysSo()
{
    m_folder->addReceiver(5); // without a node
    useRealCalls();
    RemoteListener listener;
    QVERIFY(remote().addListener(&listener));
    QVERIFY(log().contains("Creating the plugin for the remote failed"));
}

void tst_LinuxRemoteReceiver::nodeThatIsNoInputDeviceCannotBeHeld()
{
    m_folder->addReceiver(5);
    m_folder->addNode(5);
    useRealCalls();
    RemoteListener listener;
    QVERIFY(remote().addListener(&listener));
    QVERIFY(log().contains("Attempting to sieze the remote failed"));
}

void tst_LinuxRemoteReceiver::receiverThatAnotherHoldsSaysSo()
{
    plugIn();
    m_device->canBeGrabbed = false;
    RemoteListener first;
    remote().addListener(&first);
    QVERIFY(log().contains("Attempting to sieze the remote failed"));
    QCOMPARE(m_device->openDescriptors, 0);

    m_device->canBeGrabbed = true;
    RemoteListener second;
    remote().addListener(&second);
    QVERIFY(remote().isActive());
}

void tst_LinuxRemoteReceiver::deviceWithoutTheRemotesKeysSaysSo()
{
    plugIn();
    m_device->ownKeys.reset();
    m_device->ownKeys.set(KEY_POWER);
    RemoteListener listener;
    remote().addListener(&listener);
    QVERIFY(log().contains("Retrieving the remote interface elements failed"));
}

void tst_LinuxRemoteReceiver::receiverIsHeldWhileAnyoneListens()
{
    plugIn();
    RemoteListener listener;
    remote().addListener(&listener);
    QCOMPARE(m_device->opened, QByteArrayList{QFile::encodeName(m_folder->node(5))});
    QVERIFY(m_device->isGrabbed);
    QVERIFY(remote().isActive());
    remote().removeListener(&listener);
    QVERIFY(!m_device->isGrabbed);
    QCOMPARE(m_device->openDescriptors, 0);
}

void tst_LinuxRemoteReceiver::reconnectedReceiverIsFoundByTheNextNewListener()
{
    plugIn();
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

QW_TEST_MAIN(tst_LinuxRemoteReceiver)
#include "tst_LinuxRemoteReceiver.moc"

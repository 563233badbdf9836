#include "GridMachine.h"
#include "GridMeddler.h"
#include "fakes/QWTestMain.h"

#include <cerrno>

namespace
{
constexpr auto startUp = "90 af"
                         "80 007e007e007e7e00 81 0000000000000000 82 0000000000000000 83 0000000000000000"
                         "af ae ad ac ab aa a9 a8 a7 a6 a5 a4 a3 a2 a1"
                         "90 af";
} // namespace

/// A grid comes, goes or fails.
class tst_GridLifecycle : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void gridThatIsThereIsOpened();
    void gridThatComesIsOpenedAndTold();
    void otherDevicesArePassedOver();
    void settlesForATenthOfASecond();
    void showsItselfWhenItStarts();
    void showRunsOnTheReadersThread();
    void openingThatFailsIsLogged();
    void adviceStandsInTheLog();
    void removalClosesAndTells();
    void messagesOtherThanTheEndAreIgnored();
    void comesBackUnderAnotherName();
    void frameKeepsItsBitsOverARemoval();
    void cancelledReaderReadsNoMore();
    void observersMayRemoveThemselvesInACall();
    void gridMayGoDuringItsShow();
};

void tst_GridLifecycle::gridThatIsThereIsOpened()
{
    GridMachine machine(GridMachine::series128);
    const QWMonomeRemote &remote = machine.remote();
    QVERIFY(remote.isConnected());
    QCOMPARE(remote.numberOfRows(), 8u);
    QCOMPARE(remote.numberOfColumns(), 16u);
    QCOMPARE(remote.numberOfButtons(), 128u);
    QCOMPARE(remote.serialNumber(), 12u);
    QCOMPARE(remote.intensity(), 1.0f);
    QCOMPARE(machine.lines().opened(), QStringList{GridMachine::series128});
}

void tst_GridLifecycle::gridThatComesIsOpenedAndTold()
{
    GridMachine machine("");
    GridMeddler listener;
    bool wasConnected = false;
    listener.onConnected = [&](QWMonomeRemote &remote) { wasConnected = remote.isConnected(); };
    machine.remote().addObserver(listener);
    machine.devices().plugIn(GridMachine::fortyH);
    QCOMPARE(listener.take(), QStringList{"connected"});
    QVERIFY(wasConnected);
    QCOMPARE(listener.lastThread(), std::this_thread::get_id());
    QCOMPARE(machine.remote().serialNumber(), 20u);
}

void tst_GridLifecycle::otherDevicesArePassedOver()
{
    GridMachine machine("/dev/ttyS0");
    machine.remote();
    machine.devices().plugIn(
        QStringList{"/dev/tty.usbserial-m256-0042", "/dev/tty.usbserial-m0000123", "/dev/ttyUSB0"});
    QVERIFY(machine.lines().opened().isEmpty());
    QVERIFY(machine.devices().interests().isEmpty());
    QCOMPARE(machine.clock().monotonicNanoseconds(), 0);
    QVERIFY(!machine.log().contains("error"));
}

void tst_GridLifecycle::settlesForATenthOfASecond()
{
    GridMachine machine;
    machine.remote();
    QCOMPARE(machine.clock().monotonicNanoseconds(), 100'000'000);
}

void tst_GridLifecycle::showsItselfWhenItStarts()
{
    GridMachine machine;
    machine.remote();
    QVERIFY(machine.clock().waitForSleepers(1));
    QByteArray written = machine.lines().takeWritten(machine.lines().last());
    QCOMPARE(written.toHex(), QByteArray::fromHex(startUp).left(38).toHex());
    machine.clock().advance(std::chrono::milliseconds(749));
    QVERIFY(machine.lines().takeWrites().isEmpty()); // the pattern stands for three quarters of a second
    QVERIFY(machine.rest(std::chrono::milliseconds(1)));
    for (int step = 0; step < 15; ++step)
        QVERIFY(machine.rest(std::chrono::nanoseconds(33'333'333)));
    written += machine.lines().takeWritten(machine.lines().last());
    QCOMPARE(written.toHex(' '), QByteArray::fromHex(startUp).toHex(' '));
    QCOMPARE(machine.lines().reads(machine.lines().last()), 1);
}

void tst_GridLifecycle::showRunsOnTheReadersThread()
{
    GridMachine machine;
    machine.remote(); // returns while the pattern stands
    QVERIFY(machine.clock().waitForSleepers(1));
    QVERIFY(machine.remote().LEDStateAtPosition({1, 1}));
    QVERIFY(machine.rest(std::chrono::milliseconds(750)));
    QVERIFY(machine.remote().LEDStateAtPosition({1, 1})); // and fades
    QCOMPARE(machine.lines().reads(machine.lines().last()), 0);
}

void tst_GridLifecycle::openingThatFailsIsLogged()
{
    GridMachine machine("");
    GridListener listener;
    machine.remote().addObserver(listener);
    machine.lines().failToOpen(GridMachine::series64, ENXIO);
    machine.devices().plugIn(GridMachine::series64);
    QVERIFY(machine.log().contains(QString("remoteAdded error: %1").arg(ENXIO)));
    QVERIFY(listener.take().isEmpty());
    QVERIFY(!machine.remote().isConnected());
    QCOMPARE(machine.remote().numberOfRows(), 0u);
    QVERIFY(machine.lines().takeWrites().isEmpty());
}

void tst_GridLifecycle::adviceStandsInTheLog()
{
    GridMachine machine("");
    machine.remote();
    machine.lines().failToOpen(GridMachine::series64, EACCES, "Install the rule.");
    machine.devices().plugIn(GridMachine::series64);
    QVERIFY(machine.log().contains("remoteAdded error: 13"));
    QVERIFY(machine.log().contains("Install the rule."));
    machine.devices().plugIn("/dev/ttyUSB0", "A grid without a name.");
    QVERIFY(machine.log().contains("A grid without a name."));
}

void tst_GridLifecycle::removalClosesAndTells()
{
    GridMachine machine;
    GridListener listener;
    QWMonomeRemote &remote = machine.readyRemote();
    remote.addObserver(listener);
    const int descriptor = machine.lines().last();
    machine.devices().unplug(GridMachine::series64);
    QCOMPARE(listener.take(), QStringList{"removed"});
    QVERIFY(!remote.isConnected());
    QCOMPARE(machine.lines().closed(), QList<int>{descriptor});
    QVERIFY(machine.lines().takeWrites().isEmpty());
    QCOMPARE(remote.numberOfRows(), 8u); // still known
}

void tst_GridLifecycle::messagesOtherThanTheEndAreIgnored()
{
    GridMachine machine;
    QWMonomeRemote &remote = machine.remote();
    for (const quint32 message : {0u, 0xE0000011u, 0xE0000020u, 0xFFFFFFFFu})
        machine.devices().sendMessage(GridMachine::series64, message);
    QVERIFY(remote.isConnected());
    QVERIFY(machine.devices().released.empty());
}

void tst_GridLifecycle::comesBackUnderAnotherName()
{
    GridMachine machine;
    GridListener listener;
    QWMonomeRemote &remote = machine.readyRemote();
    remote.addObserver(listener);
    machine.devices().unplug(GridMachine::series64);
    machine.clock().advance(std::chrono::milliseconds(1)); // its reader ends
    QVERIFY(machine.clock().waitForSleepers(0));
    machine.devices().plugIn(GridMachine::fortyH);
    QCOMPARE(listener.take(), (QStringList{"removed", "connected"}));
    QVERIFY(machine.endShow());
    QVERIFY(machine.receive(QByteArray::fromHex("0112")));
    QCOMPARE(listener.take(), QStringList{"down 1 2"});
    QCOMPARE(machine.lines().opened().size(), 2);
}

void tst_GridLifecycle::frameKeepsItsBitsOverARemoval()
{
    GridMachine machine;
    QWMonomeRemote &remote = machine.readyRemote();
    remote.setLEDStateAtPosition(true, {2, 3});
    machine.devices().unplug(GridMachine::series64);
    QVERIFY(remote.LEDStateAtPosition({2, 3}));
}

void tst_GridLifecycle::cancelledReaderReadsNoMore()
{
    GridMachine machine;
    machine.readyRemote();
    const int descriptor = machine.lines().last();
    const int reads = machine.lines().reads(descriptor);
    machine.devices().unplug(GridMachine::series64);
    machine.clock().advance(std::chrono::milliseconds(1));
    QVERIFY(machine.clock().waitForSleepers(0));
    QCOMPARE(machine.lines().reads(descriptor), reads);
    QCOMPARE(machine.lines().reads(0), 0);
}

void tst_GridLifecycle::observersMayRemoveThemselvesInACall()
{
    GridMachine machine;
    GridMeddler first;
    GridListener second;
    QWMonomeRemote &remote = machine.readyRemote();
    first.onButton = [&](QWMonomeRemote &caller) {
        caller.removeObserver(first);
        caller.removeObserver(second);
    };
    remote.addObserver(first);
    remote.addObserver(second);
    QVERIFY(machine.receive(QByteArray::fromHex("0035 0036")));
    QCOMPARE(first.take(), QStringList{"down 3 5"});
    QVERIFY(second.take().isEmpty());
}

void tst_GridLifecycle::gridMayGoDuringItsShow()
{
    GridMachine machine;
    QWMonomeRemote &remote = machine.remote();
    QVERIFY(machine.clock().waitForSleepers(1));
    const int descriptor = machine.lines().last();
    machine.devices().unplug(GridMachine::series64);
    machine.lines().takeWrites();
    QVERIFY(machine.endShow()); // it goes on, into nothing
    QVERIFY(machine.lines().takeWritten(descriptor).isEmpty());
    QVERIFY(!remote.isConnected());
}

QW_TEST_MAIN(tst_GridLifecycle)
#include "tst_GridLifecycle.moc"

#include "GridListener.h"
#include "GridMachine.h"
#include "fakes/QWTestMain.h"

/// A second grid beside the first; one at a time is supported.
class tst_GridTakeover : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void secondGridTakesOver();
    void endOfTheFirstOfTwoClosesTheSecond();
    void endOfTheSecondThenTheFirst();
    void twoGridsAtOnceInOneCall();
    void nextModelReplacesTheDimensions();
};

void tst_GridTakeover::secondGridTakesOver()
{
    GridMachine machine;
    GridListener listener;
    QWMonomeRemote &remote = machine.readyRemote();
    remote.addObserver(listener);
    const int first = machine.lines().last();
    machine.devices().plugIn(GridMachine::series128);
    const int second = machine.lines().last();
    QCOMPARE(listener.take(), QStringList{"connected"});
    QCOMPARE(remote.numberOfColumns(), 16u);
    QVERIFY(machine.lines().closed().isEmpty()); // the first stays open, unused
    QVERIFY(machine.clock().waitForSleepers(2)); // the second reader has shown its pattern
    machine.lines().takeWrites();
    remote.setIntensity(0);
    QCOMPARE(machine.lines().takeWritten(second), QByteArray::fromHex("a0"));
    const int reads = machine.lines().reads(first);
    machine.lines().feed(second, QByteArray::fromHex("0035"));
    QVERIFY(machine.rest(std::chrono::milliseconds(1), 2)); // the first reader reads on, from the second's line
    QCOMPARE(listener.take(), QStringList{"down 3 5"});
    QCOMPARE(machine.lines().reads(first), reads);
}

void tst_GridTakeover::endOfTheFirstOfTwoClosesTheSecond()
{
    GridMachine machine;
    GridListener listener;
    machine.remote().addObserver(listener);
    machine.devices().plugIn(GridMachine::fortyH);
    const int second = machine.lines().last();
    machine.devices().unplug(GridMachine::series64);
    QCOMPARE(listener.take(), (QStringList{"connected", "removed"}));
    QCOMPARE(machine.lines().closed(), QList<int>{second});
    QVERIFY(machine.devices().interests().isEmpty()); // the second's end is not heard
    machine.devices().unplug(GridMachine::fortyH);
    QVERIFY(listener.take().isEmpty());
}

void tst_GridTakeover::endOfTheSecondThenTheFirst()
{
    GridMachine machine;
    GridListener listener;
    machine.remote().addObserver(listener);
    machine.devices().plugIn(GridMachine::fortyH);
    const int second = machine.lines().last();
    machine.devices().unplug(GridMachine::fortyH);
    machine.devices().unplug(GridMachine::series64); // is still listened to
    QCOMPARE(listener.take(), (QStringList{"connected", "removed", "removed"}));
    QCOMPARE(machine.lines().closed(), (QList<int>{second, 0}));
    QVERIFY(!machine.remote().isConnected());
}

void tst_GridTakeover::twoGridsAtOnceInOneCall()
{
    GridMachine machine("");
    GridListener listener;
    machine.remote().addObserver(listener);
    machine.devices().plugIn(QStringList{GridMachine::series64, "/dev/ttyS0", GridMachine::fortyH});
    QCOMPARE(listener.take(), (QStringList{"connected", "connected"}));
    QCOMPARE(machine.remote().serialNumber(), 20u);
    QCOMPARE(machine.clock().monotonicNanoseconds(), 200'000'000);
}

void tst_GridTakeover::nextModelReplacesTheDimensions()
{
    GridMachine machine(GridMachine::series128);
    machine.remote();
    machine.devices().plugIn("/dev/tty.usbserial-m64-0007");
    QCOMPARE(machine.remote().numberOfColumns(), 8u);
    QCOMPARE(machine.remote().serialNumber(), 7u);
}

QW_TEST_MAIN(tst_GridTakeover)
#include "tst_GridTakeover.moc"

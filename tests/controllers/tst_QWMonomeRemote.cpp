#include "GridListener.h"
#include "GridMachine.h"
#include "fakes/QWTestMain.h"

#include <limits>

namespace
{
QByteArray hex(const char *digits)
{
    return QByteArray::fromHex(digits);
}

constexpr auto darkSeriesFrame = "80 0000000000000000 81 0000000000000000 82 0000000000000000 83 0000000000000000";
constexpr auto dark40hFrame = "0070 0071 0072 0073 0074 0075 0076 0077";
} // namespace

/// What goes over the wire, and what observers and host see of it.
class tst_QWMonomeRemote : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void knowsNothingWithoutAGrid();
    void callsWithoutAGridReachDescriptorZero();
    void buttonsReachTheObserversOnTheReadersThread();
    void positionsAreTurned();
    void columnsBeyondSevenComeNegative();
    void everyByteInEveryPlace_data();
    void everyByteInEveryPlace();
    void oddCountTakesWhatTheBufferHeld();
    void nothingIsCarriedToTheNextRead();
    void burstsComeInOrder();
    void aReadTakesFiveHundredAndTwelveBytes();
    void intensityIsSentAndKeptAsGiven_data();
    void intensityIsSentAndKeptAsGiven();
    void ledsOfASeriesSendTheWholeFrame();
    void ledsOfA40hSendItsRows();
    void columnsBeyondSevenAreLitByFramesOnly();
    void ledsFollowTheOrientation();
    void toggleNegates();
    void clearingSendsOneByteToASeries();
    void clearingSendsEightRowsToA40h();
    void unknownQuadrantOnlySendsTheFrame();
    void orientationIsKeptInEightBits();
    void ledsMayBeSetOnManyThreads();
    void newestFrameIsSentLast();
    void newestBrightnessIsSentLast();
    void frameBehindAClearingIsNotTheLast();
};

void tst_QWMonomeRemote::knowsNothingWithoutAGrid()
{
    GridMachine machine("");
    const QWMonomeRemote &remote = machine.remote();
    QVERIFY(!remote.isConnected());
    QCOMPARE(remote.numberOfRows(), 0u);
    QCOMPARE(remote.numberOfColumns(), 0u);
    QCOMPARE(remote.numberOfButtons(), 0u);
    QCOMPARE(remote.serialNumber(), 0u);
    QCOMPARE(remote.orientation(), 0u);
    QCOMPARE(remote.origin(), 0);
    QCOMPARE(remote.intensity(), 0.0f);
    QCOMPARE(&machine.remote(), &remote);
}

void tst_QWMonomeRemote::callsWithoutAGridReachDescriptorZero()
{
    GridMachine machine("");
    QWMonomeRemote &remote = machine.remote();
    remote.setIntensity(0.5f);
    remote.clearLEDs();
    remote.setLEDStateAtPosition(true, {1, 0});
    const auto writes = machine.lines().takeWrites();
    QCOMPARE(writes.size(), 3);
    for (const auto &write : writes)
        QCOMPARE(write.descriptor, 0);
    QCOMPARE(writes[0].bytes, hex("a7"));
    QCOMPARE(writes[1].bytes, hex("90"));
    QCOMPARE(writes[2].bytes.first(9), hex("80 0200000000000000"));
    QVERIFY(remote.LEDStateAtPosition({1, 0}));
    remote.shutdown();
    QVERIFY(machine.lines().closed().isEmpty());
}

void tst_QWMonomeRemote::buttonsReachTheObserversOnTheReadersThread()
{
    GridMachine machine(GridMachine::fortyH);
    GridListener first, second;
    machine.remote().addObserver(first);
    machine.remote().addObserver(second);
    machine.readyRemote();
    QVERIFY(machine.receive(hex("0135 0035 1035")));
    const QStringList expected{"down 3 5", "up 3 5"};
    QCOMPARE(first.take(), expected);
    QCOMPARE(second.take(), expected);
    QVERIFY(first.lastThread() != std::this_thread::get_id());
}

void tst_QWMonomeRemote::positionsAreTurned()
{
    GridMachine machine;
    GridListener listener;
    QWMonomeRemote &remote = machine.readyRemote();
    remote.addObserver(listener);
    remote.setOrientation(1);
    QVERIFY(machine.receive(hex("0000")));
    QCOMPARE(listener.take(), QStringList{"down 7 0"});
    remote.setOrigin(1);
    QVERIFY(machine.receive(hex("1000")));
    QCOMPARE(listener.take(), QStringList{"up 7 7"});
}

void tst_QWMonomeRemote::columnsBeyondSevenComeNegative()
{
    GridMachine machine(GridMachine::series128);
    GridListener listener;
    machine.readyRemote().addObserver(listener);
    QVERIFY(machine.receive(hex("00a3 00f0 0080 2035 e011")));
    QCOMPARE(listener.take(), (QStringList{"down -6 3", "down -1 0", "down -8 0"}));
}

void tst_QWMonomeRemote::everyByteInEveryPlace_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<int>("presses"); // of the 65,536 pairs
    QTest::newRow("series") << QString(GridMachine::series64) << 32 * 256;
    QTest::newRow("40h") << QString(GridMachine::fortyH) << (16 + 128) * 256;
}

void tst_QWMonomeRemote::everyByteInEveryPlace()
{
    QFETCH(QString, path);
    QFETCH(int, presses);
    GridMachine machine(path);
    GridListener listener;
    machine.readyRemote().addObserver(listener);
    for (int first = 0; first < 256; ++first) {
        QByteArray bytes;
        for (int second = 0; second < 256; ++second)
            bytes.append(static_cast<char>(first)).append(static_cast<char>(second));
        QVERIFY(machine.receive(bytes));
    }
    QCOMPARE(listener.count(), presses);
}

void tst_QWMonomeRemote::oddCountTakesWhatTheBufferHeld()
{
    GridMachine machine;
    GridListener listener;
    machine.readyRemote().addObserver(listener);
    QVERIFY(machine.receive(hex("10"))); // nothing was read before: the byte beyond is 0
    QVERIFY(machine.receive(hex("0035 0046")));
    QVERIFY(machine.receive(hex("10")));
    QVERIFY(machine.receive(hex("1021 10")));
    QCOMPARE(listener.take(), (QStringList{"up 0 0", "down 3 5", "down 4 6", "up 3 5", "up 2 1", "up 4 6"}));
}

void tst_QWMonomeRemote::nothingIsCarriedToTheNextRead()
{
    GridMachine machine;
    GridListener listener;
    machine.readyRemote().addObserver(listener);
    QVERIFY(machine.receive(hex("00")));
    QVERIFY(machine.receive(hex("12 00"))); // would be down 1 2 if the byte before were kept
    QCOMPARE(listener.take(), (QStringList{"down 0 0", "up 0 0"}));
}

void tst_QWMonomeRemote::burstsComeInOrder()
{
    GridMachine machine;
    GridListener listener;
    machine.readyRemote().addObserver(listener);
    QByteArray burst;
    QStringList expected;
    for (int i = 0; i < 256; ++i) {
        const int x = i % 8, y = i / 16;
        burst.append(static_cast<char>(i % 2 ? 0x10 : 0x00)).append(static_cast<char>(x * 16 + y));
        expected.append(QString("%1 %2 %3").arg(i % 2 ? "up" : "down").arg(x).arg(y));
    }
    QVERIFY(machine.receive(burst));
    QCOMPARE(listener.take(), expected);
}

void tst_QWMonomeRemote::aReadTakesFiveHundredAndTwelveBytes()
{
    GridMachine machine;
    GridListener listener;
    machine.readyRemote().addObserver(listener);
    QVERIFY(machine.receive(QByteArray(513, 0)));
    QCOMPARE(listener.take().size(), 256);
    QVERIFY(machine.rest());
    QCOMPARE(listener.take().size(), 1);
}

void tst_QWMonomeRemote::intensityIsSentAndKeptAsGiven_data()
{
    QTest::addColumn<float>("intensity");
    QTest::addColumn<QByteArray>("series");
    QTest::addColumn<QByteArray>("fortyH");
    QTest::newRow("half") << 0.5f << hex("a7") << hex("0730");
    QTest::newRow("too much") << 2.0f << hex("af") << hex("0f30");
    QTest::newRow("negative") << -1.0f << hex("a0") << hex("0030");
}

void tst_QWMonomeRemote::intensityIsSentAndKeptAsGiven()
{
    QFETCH(float, intensity);
    QFETCH(QByteArray, series);
    QFETCH(QByteArray, fortyH);
    for (const auto &[path, expected] : {std::pair(GridMachine::series64, series), {GridMachine::fortyH, fortyH}}) {
        GridMachine machine(path);
        QWMonomeRemote &remote = machine.readyRemote();
        remote.setIntensity(intensity);
        QCOMPARE(remote.intensity(), intensity);
        QCOMPARE(machine.lines().takeWrites(), (QList<FakeSerialLines::Write>{{machine.lines().last(), expected}}));
    }
}

void tst_QWMonomeRemote::ledsOfASeriesSendTheWholeFrame()
{
    GridMachine machine;
    QWMonomeRemote &remote = machine.readyRemote();
    remote.setLEDStateAtPosition(true, {3, 2});
    QVERIFY(remote.LEDStateAtPosition({3, 2}));
    QVERIFY(!remote.LEDStateAtPosition({2, 3}));
    const auto writes = machine.lines().takeWrites();
    QCOMPARE(writes.size(), 1); // no message of another thread comes between its four
    QCOMPARE(writes[0].bytes, hex("80 0000080000000000 81 0000000000000000 82 0000000000000000 83 0000000000000000"));
    remote.setLEDStateAtPosition(false, {3, 2});
    QCOMPARE(machine.lines().takeWritten(machine.lines().last()), hex(darkSeriesFrame));
}

void tst_QWMonomeRemote::ledsOfA40hSendItsRows()
{
    GridMachine machine(GridMachine::fortyH);
    QWMonomeRemote &remote = machine.readyRemote();
    remote.setLEDStateAtPosition(true, {3, 2});
    const auto writes = machine.lines().takeWrites();
    QCOMPARE(writes.size(), 1);
    QCOMPARE(writes[0].bytes, hex("0070 0071 0872 0073 0074 0075 0076 0077"));
}

void tst_QWMonomeRemote::columnsBeyondSevenAreLitByFramesOnly()
{
    GridMachine machine(GridMachine::series128);
    QWMonomeRemote &remote = machine.readyRemote();
    remote.setLEDStateAtPosition(true, {10, 2});
    QCOMPARE(machine.lines().takeWritten(machine.lines().last()), hex(darkSeriesFrame));
    const quint8 rows[8] = {0, 0, 0x04, 0, 0, 0, 0, 0xFF};
    remote.setLEDFrameAtQuadrant(rows, 1);
    QCOMPARE(machine.lines().takeWritten(machine.lines().last()),
             hex("80 0000000000000000 81 00000400000000ff 82 0000000000000000 83 0000000000000000"));
    QVERIFY(!remote.LEDStateAtPosition({10, 2}));
}

void tst_QWMonomeRemote::ledsFollowTheOrientation()
{
    GridMachine machine;
    QWMonomeRemote &remote = machine.readyRemote();
    remote.setOrientation(1);
    remote.setLEDStateAtPosition(true, {7, 0}); // the device's first
    QCOMPARE(machine.lines().takeWrites().first().bytes.first(9), hex("80 0100000000000000"));
    QVERIFY(remote.LEDStateAtPosition({7, 0}));
    remote.setOrientation(0);
    QVERIFY(remote.LEDStateAtPosition({0, 0}));
}

void tst_QWMonomeRemote::toggleNegates()
{
    GridMachine machine;
    QWMonomeRemote &remote = machine.readyRemote();
    remote.toggleLEDAtPosition({1, 1});
    QVERIFY(remote.LEDStateAtPosition({1, 1}));
    remote.toggleLEDAtPosition({1, 1});
    QVERIFY(!remote.LEDStateAtPosition({1, 1}));
    QCOMPARE(machine.lines().takeWrites().size(), 2);
}

void tst_QWMonomeRemote::clearingSendsOneByteToASeries()
{
    GridMachine machine;
    QWMonomeRemote &remote = machine.readyRemote();
    remote.setLEDStateAtPosition(true, {3, 2});
    machine.lines().takeWrites();
    remote.clearLEDs();
    QCOMPARE(machine.lines().takeWritten(machine.lines().last()), hex("90"));
    QVERIFY(!remote.LEDStateAtPosition({3, 2}));
}

void tst_QWMonomeRemote::clearingSendsEightRowsToA40h()
{
    GridMachine machine(GridMachine::fortyH);
    QWMonomeRemote &remote = machine.readyRemote();
    remote.setLEDStateAtPosition(true, {3, 2});
    machine.lines().takeWrites();
    remote.clearLEDs();
    QCOMPARE(machine.lines().takeWritten(machine.lines().last()), hex(dark40hFrame));
    QVERIFY(!remote.LEDStateAtPosition({3, 2}));
}

void tst_QWMonomeRemote::unknownQuadrantOnlySendsTheFrame()
{
    GridMachine machine;
    QWMonomeRemote &remote = machine.readyRemote();
    const quint8 rows[8] = {255, 255, 255, 255, 255, 255, 255, 255};
    remote.setLEDFrameAtQuadrant(rows, 4);
    QCOMPARE(machine.lines().takeWritten(machine.lines().last()), hex(darkSeriesFrame));
}

void tst_QWMonomeRemote::orientationIsKeptInEightBits()
{
    GridMachine machine;
    machine.remote().setOrientation(257);
    QCOMPARE(machine.remote().orientation(), 1u);
}

void tst_QWMonomeRemote::ledsMayBeSetOnManyThreads()
{
    GridMachine machine;
    QWMonomeRemote &remote = machine.readyRemote();
    const auto light = [&remote](float column) {
        for (int row = 0; row < 8; ++row) {
            remote.setLEDStateAtPosition(true, {column, static_cast<float>(row)});
            remote.setIntensity(column / 8);
        }
    };
    std::thread first(light, 1.0f), second(light, 2.0f);
    QVERIFY(machine.receive(hex("0035 1035")));
    first.join();
    second.join();
    machine.lines().takeWrites();
    remote.setLEDStateAtPosition(true, {0, 0});
    QCOMPARE(machine.lines().takeWrites().first().bytes.first(9), hex("80 0706060606060606"));
}

/// Another thread sets an LED while a frame that does not know of it is on its way.
void tst_QWMonomeRemote::newestFrameIsSentLast()
{
    for (const char *path : {GridMachine::series64, GridMachine::fortyH}) {
        GridMachine machine(path);
        QWMonomeRemote &remote = machine.readyRemote();
        machine.lines().atNextWrite([&] { std::thread([&] { remote.setLEDStateAtPosition(true, {1, 0}); }).join(); });
        remote.setLEDStateAtPosition(true, {0, 0});
        const auto writes = machine.lines().takeWrites();
        QCOMPARE(writes.size(), 3);
        QCOMPARE(writes[1].bytes.first(2), hex(path == GridMachine::fortyH ? "0170" : "8001"));
        QCOMPARE(writes[2].bytes.first(2), hex(path == GridMachine::fortyH ? "0370" : "8003"));
    }
}

void tst_QWMonomeRemote::newestBrightnessIsSentLast()
{
    GridMachine machine;
    QWMonomeRemote &remote = machine.readyRemote();
    machine.lines().atNextWrite([&] { std::thread([&] { remote.setIntensity(0); }).join(); });
    remote.setIntensity(1);
    QCOMPARE(machine.lines().takeWritten(machine.lines().last()), hex("a0 af a0"));
    QCOMPARE(remote.intensity(), 0.0f);
}

/// The device would go on showing it.
void tst_QWMonomeRemote::frameBehindAClearingIsNotTheLast()
{
    GridMachine machine;
    QWMonomeRemote &remote = machine.readyRemote();
    machine.lines().atNextWrite([&] { std::thread([&] { remote.setLEDStateAtPosition(true, {1, 0}); }).join(); });
    remote.clearLEDs();
    const auto writes = machine.lines().takeWrites();
    QCOMPARE(writes.size(), 3);
    QVERIFY(!remote.LEDStateAtPosition({1, 0}));
    QCOMPARE(writes.last().bytes, hex(darkSeriesFrame));
}

QW_TEST_MAIN(tst_QWMonomeRemote)
#include "tst_QWMonomeRemote.moc"

#include <simulators/GridDevice.h>

#include <QTest>

namespace
{
QByteArray hex(const char *digits)
{
    return QByteArray::fromHex(digits);
}

GridDevice deviceOf(const char *serial)
{
    return GridDevice(*GridDevice::modelOfSerial(serial));
}

QStringList rowsOf(const GridDevice &device)
{
    QStringList rows;
    for (int row = 0; row < device.model().rows; ++row) {
        QString text;
        for (int column = 0; column < device.model().columns; ++column)
            text += device.led(column, row) ? '#' : '.';
        rows.append(text);
    }
    return rows;
}
} // namespace

class tst_GridDevice : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void serialTellsTheModel();
    void buttonsAreSent();
    void seriesMessagesAreObeyed_data();
    void seriesMessagesAreObeyed();
    void quadrantsLieAsPublished();
    void quadrantsBeyondTheGridAreSkipped();
    void fortyHTakesTheDataFirst();
    void messagesMayComeInPieces();
    void restartForgetsWhatWasBegun();
    void nonsenseIsCounted();
};

void tst_GridDevice::serialTellsTheModel()
{
    QVERIFY(GridDevice::modelOfSerial("m40h0020")->is40h);
    QCOMPARE(GridDevice::modelOfSerial("m128-0012")->columns, 16);
    QCOMPARE(GridDevice::modelOfSerial("m256-0042")->rows, 16);
    QVERIFY(!GridDevice::modelOfSerial("m0000123"));
    QVERIFY(!GridDevice::modelOfSerial(""));
}

void tst_GridDevice::buttonsAreSent()
{
    QCOMPARE(deviceOf("m64-1").buttonMessage(3, 5, true), hex("0035"));
    QCOMPARE(deviceOf("m64-1").buttonMessage(3, 5, false), hex("1035"));
    QCOMPARE(deviceOf("m128-1").buttonMessage(10, 3, true), hex("00a3"));
    QCOMPARE(deviceOf("m40h1").buttonMessage(3, 5, true), hex("0135"));
    QCOMPARE(deviceOf("m40h1").buttonMessage(3, 5, false), hex("0035"));
}

void tst_GridDevice::seriesMessagesAreObeyed_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("firstRow");
    QTest::newRow("LED on") << hex("2030") << QString("...#....");
    QTest::newRow("LED off") << hex("91 3030") << QString("###.####");
    QTest::newRow("row") << hex("4081") << QString("#......#");
    QTest::newRow("column") << hex("52ff") << QString("..#.....");
    QTest::newRow("row of 16") << hex("600fff") << QString("####....");
    QTest::newRow("column of 16") << hex("72ffff") << QString("..#.....");
    QTest::newRow("quadrant") << hex("80 0500000000000000") << QString("#.#.....");
    QTest::newRow("all on") << hex("91") << QString("########");
    QTest::newRow("all off") << hex("91 90") << QString("........");
    QTest::newRow("between others") << hex("a3 b0 4001 c2 d2") << QString("#.......");
}

void tst_GridDevice::seriesMessagesAreObeyed()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, firstRow);
    GridDevice device = deviceOf("m64-1");
    device.receive(bytes);
    QCOMPARE(rowsOf(device).first(), firstRow);
    QCOMPARE(device.misunderstood(), 0);
}

void tst_GridDevice::quadrantsLieAsPublished()
{
    GridDevice device = deviceOf("m256-1");
    for (int quadrant = 0; quadrant < 4; ++quadrant)
        device.receive(QByteArray(1, static_cast<char>(0x80 + quadrant)) + char(1 << quadrant) + QByteArray(7, 0));
    QCOMPARE(rowsOf(device)[0], QString("#........#......"));
    QCOMPARE(rowsOf(device)[8], QString("..#........#...."));
}

void tst_GridDevice::quadrantsBeyondTheGridAreSkipped()
{
    GridDevice device = deviceOf("m64-1");
    for (int quadrant = 1; quadrant < 16; ++quadrant)
        if (quadrant != 4 && quadrant != 8 && quadrant != 12)
            device.receive(QByteArray(1, static_cast<char>(0x80 + quadrant)) + QByteArray(8, '\xFF'));
    QCOMPARE(rowsOf(device), QStringList(8, "........"));
}

void tst_GridDevice::fortyHTakesTheDataFirst()
{
    GridDevice device = deviceOf("m40h1");
    device.receive(hex("8170 0730"));
    QCOMPARE(rowsOf(device).first(), QString("#......#"));
    QCOMPARE(device.level(), 7);
    QCOMPARE(device.misunderstood(), 0);
}

void tst_GridDevice::messagesMayComeInPieces()
{
    GridDevice device = deviceOf("m64-1");
    for (const char byte : hex("80 ff00000000000000 a4"))
        device.receive(QByteArray(1, byte));
    QCOMPARE(rowsOf(device).first(), QString("########"));
    QCOMPARE(device.level(), 4);
}

void tst_GridDevice::restartForgetsWhatWasBegun()
{
    GridDevice device = deviceOf("m64-1");
    device.receive(hex("4081 80 ff"));
    device.restart();
    device.receive(hex("a4"));
    QCOMPARE(device.level(), 4);
    QCOMPARE(rowsOf(device).first(), QString("#......#"));
}

void tst_GridDevice::nonsenseIsCounted()
{
    GridDevice series = deviceOf("m64-1");
    series.receive(hex("00 10 e0 f0 a4"));
    QCOMPARE(series.misunderstood(), 4);
    QCOMPARE(series.level(), 4);
    GridDevice fortyH = deviceOf("m40h1");
    fortyH.receive(hex("3007")); // command first: not in our order
    QCOMPARE(fortyH.misunderstood(), 2);
}

QTEST_APPLESS_MAIN(tst_GridDevice)
#include "tst_GridDevice.moc"

#include <QWUtilities/controllers/grid/GridModel.h>
#include <QWUtilities/controllers/grid/GridProtocol.h>

#include <QTest>

#include <limits>

using namespace qw;

Q_DECLARE_METATYPE(qw::GridPress)

namespace
{
QByteArray bytesOf(const GridMessage &message)
{
    return QByteArray(reinterpret_cast<const char *>(message.bytes.data()), static_cast<qsizetype>(message.length));
}

/// What the table of messages from the device says, written down once more without shifts of signed numbers.
GridPress expectedPress(GridProtocol protocol, int first, int second)
{
    const int column = second / 16;
    GridPress press{.kind = GridPress::None,
                    .x = static_cast<std::int8_t>(column < 8 ? column : column - 16),
                    .y = static_cast<std::uint8_t>(second % 16)};
    if (protocol == GridProtocol::Series && first < 0x20)
        press.kind = first < 0x10 ? GridPress::Down : GridPress::Up;
    if (protocol == GridProtocol::FortyH && (first < 0x10 || first >= 0x80))
        press.kind = first % 16 ? GridPress::Down : GridPress::Up;
    return press;
}
} // namespace

class tst_GridProtocol : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void pressesAreDecoded_data();
    void pressesAreDecoded();
    void everyPairOfBytesMeansWhatTheTableSays();
    void messagesHaveTheirBytes_data();
    void messagesHaveTheirBytes();
    void everyRowOfThe40hSendsItsDataFirst();
    void brightnessHasSixteenLevels_data();
    void brightnessHasSixteenLevels();
    void pathsTellTheModel_data();
    void pathsTellTheModel();
    void serialNumberBeginsTheLastFourCharacters_data();
    void serialNumberBeginsTheLastFourCharacters();
};

void tst_GridProtocol::pressesAreDecoded_data()
{
    QTest::addColumn<bool>("is40h");
    QTest::addColumn<int>("first");
    QTest::addColumn<int>("second");
    QTest::addColumn<GridPress>("press");
    QTest::newRow("40h up") << true << 0x00 << 0x35 << GridPress{GridPress::Up, 3, 5};
    QTest::newRow("40h down") << true << 0x01 << 0x35 << GridPress{GridPress::Down, 3, 5};
    QTest::newRow("40h analogue input") << true << 0x10 << 0x35 << GridPress{GridPress::None, 3, 5};
    QTest::newRow("40h negative high nibble, down") << true << 0x81 << 0x12 << GridPress{GridPress::Down, 1, 2};
    QTest::newRow("40h negative high nibble, up") << true << 0xF0 << 0x12 << GridPress{GridPress::Up, 1, 2};
    QTest::newRow("series down") << false << 0x00 << 0x35 << GridPress{GridPress::Down, 3, 5};
    QTest::newRow("series up") << false << 0x10 << 0x35 << GridPress{GridPress::Up, 3, 5};
    QTest::newRow("series other") << false << 0x20 << 0x35 << GridPress{GridPress::None, 3, 5};
    QTest::newRow("series auxiliary input") << false << 0xE0 << 0x35 << GridPress{GridPress::None, 3, 5};
    QTest::newRow("series column beyond 7") << false << 0x00 << 0xA3 << GridPress{GridPress::Down, -6, 3};
    QTest::newRow("series row beyond 7") << false << 0x00 << 0x7F << GridPress{GridPress::Down, 7, 15};
}

void tst_GridProtocol::pressesAreDecoded()
{
    QFETCH(bool, is40h);
    QFETCH(int, first);
    QFETCH(int, second);
    QFETCH(GridPress, press);
    const auto protocol = is40h ? GridProtocol::FortyH : GridProtocol::Series;
    QCOMPARE(decodeGridPress(protocol, static_cast<std::uint8_t>(first), static_cast<std::uint8_t>(second)), press);
}

void tst_GridProtocol::everyPairOfBytesMeansWhatTheTableSays()
{
    for (const auto protocol : {GridProtocol::Series, GridProtocol::FortyH})
        for (int first = 0; first < 256; ++first)
            for (int second = 0; second < 256; ++second)
                if (decodeGridPress(protocol, static_cast<std::uint8_t>(first), static_cast<std::uint8_t>(second)) !=
                    expectedPress(protocol, first, second))
                    QFAIL(qPrintable(QString("%1 %2").arg(first, 2, 16).arg(second, 2, 16)));
}

void tst_GridProtocol::messagesHaveTheirBytes_data()
{
    QTest::addColumn<QByteArray>("sent");
    QTest::addColumn<QByteArray>("expected");
    const GridRows rows{1, 2, 4, 8, 16, 32, 64, 255};
    QTest::newRow("clear") << bytesOf(gridClearMessage()) << QByteArray::fromHex("90");
    QTest::newRow("series brightness") << bytesOf(gridBrightnessMessage(GridProtocol::Series, 7))
                                       << QByteArray::fromHex("a7");
    QTest::newRow("series brightest") << bytesOf(gridBrightnessMessage(GridProtocol::Series, 15))
                                      << QByteArray::fromHex("af");
    QTest::newRow("first quadrant") << bytesOf(gridQuadrantMessage(0, rows))
                                    << QByteArray::fromHex("80 01020408102040ff");
    QTest::newRow("last quadrant") << bytesOf(gridQuadrantMessage(3, rows))
                                   << QByteArray::fromHex("83 01020408102040ff");
    QTest::newRow("40h brightness") << bytesOf(gridBrightnessMessage(GridProtocol::FortyH, 7))
                                    << QByteArray::fromHex("0730");
    QTest::newRow("40h row") << bytesOf(gridRowMessage(5, 0xA1)) << QByteArray::fromHex("a175");
}

void tst_GridProtocol::messagesHaveTheirBytes()
{
    QFETCH(QByteArray, sent);
    QFETCH(QByteArray, expected);
    QCOMPARE(sent.toHex(' '), expected.toHex(' '));
}

void tst_GridProtocol::everyRowOfThe40hSendsItsDataFirst()
{
    for (unsigned row = 0; row < 8; ++row)
        for (unsigned bits = 0; bits < 256; ++bits) {
            const char expected[] = {static_cast<char>(bits), static_cast<char>(0x70 + row)};
            QCOMPARE(bytesOf(gridRowMessage(row, static_cast<std::uint8_t>(bits))), QByteArray(expected, 2));
        }
}

void tst_GridProtocol::brightnessHasSixteenLevels_data()
{
    QTest::addColumn<float>("intensity");
    QTest::addColumn<unsigned>("level");
    QTest::newRow("none") << 0.0f << 0u;
    QTest::newRow("half") << 0.5f << 7u;
    QTest::newRow("just below a step") << 0.0666f << 0u;
    QTest::newRow("just above a step") << 0.0667f << 1u;
    QTest::newRow("just below full") << 0.9999f << 14u;
    QTest::newRow("full") << 1.0f << 15u;
    QTest::newRow("too much") << 2.0f << 15u;
    QTest::newRow("infinite") << std::numeric_limits<float>::infinity() << 15u;
    QTest::newRow("negative") << -1.0f << 0u;
    QTest::newRow("endlessly negative") << -std::numeric_limits<float>::infinity() << 0u;
    QTest::newRow("no number") << std::numeric_limits<float>::quiet_NaN() << 0u;
}

void tst_GridProtocol::brightnessHasSixteenLevels()
{
    QFETCH(float, intensity);
    QFETCH(unsigned, level);
    QCOMPARE(gridBrightnessLevel(intensity), level);
}

void tst_GridProtocol::pathsTellTheModel_data()
{
    QTest::addColumn<QByteArray>("path");
    QTest::addColumn<bool>("isGrid");
    QTest::addColumn<int>("rows"); // 0: nothing is told
    QTest::addColumn<int>("columns");
    QTest::addColumn<bool>("is40h");
    QTest::newRow("40h") << QByteArray("/dev/tty.usbserial-m40h0020") << true << 8 << 8 << true;
    QTest::newRow("64") << QByteArray("/dev/tty.usbserial-m64-0123") << true << 8 << 8 << false;
    QTest::newRow("128") << QByteArray("/dev/tty.usbserial-m128-012") << true << 8 << 16 << false;
    QTest::newRow("256 is passed over") << QByteArray("/dev/tty.usbserial-m256-012") << false << 16 << 16 << false;
    QTest::newRow("digits of a 64 that look like a 40h")
        << QByteArray("/dev/tty.usbserial-m64-1405") << true << 8 << 8 << true;
    QTest::newRow("digits of a 128 that look like a 64")
        << QByteArray("/dev/tty.usbserial-m128-648") << true << 8 << 8 << false;
    QTest::newRow("folder that looks like a 40h") << QByteArray("/tmp/40/tty.m128-001") << true << 8 << 8 << true;
    QTest::newRow("later device") << QByteArray("/dev/tty.usbserial-m0000123") << false << 0 << 0 << false;
    QTest::newRow("clone") << QByteArray("/dev/tty.usbserial-a40h-001") << false << 8 << 8 << true;
    QTest::newRow("other serial device") << QByteArray("/dev/ttyS0") << false << 0 << 0 << false;
    QTest::newRow("nothing") << QByteArray() << false << 0 << 0 << false;
}

void tst_GridProtocol::pathsTellTheModel()
{
    QFETCH(QByteArray, path);
    QFETCH(bool, isGrid);
    QFETCH(int, rows);
    QFETCH(int, columns);
    QFETCH(bool, is40h);
    const std::string text = path.toStdString();
    QCOMPARE(isGridPath(text), isGrid);
    const auto model = gridModelOfPath(text);
    QCOMPARE(model.has_value(), rows > 0);
    const GridModel expected{static_cast<std::uint32_t>(rows), static_cast<std::uint32_t>(columns),
                             is40h ? GridProtocol::FortyH : GridProtocol::Series};
    QVERIFY(!model || *model == expected);
}

void tst_GridProtocol::serialNumberBeginsTheLastFourCharacters_data()
{
    QTest::addColumn<QByteArray>("path");
    QTest::addColumn<unsigned>("number");
    QTest::newRow("four digits") << QByteArray("/dev/tty.usbserial-m64-0123") << 123u;
    QTest::newRow("all nine") << QByteArray("/dev/tty.usbserial-m64-9999") << 9999u;
    QTest::newRow("three digits behind a dash") << QByteArray("/dev/tty.usbserial-m128-012") << 0u;
    QTest::newRow("digits, then letters") << QByteArray("/dev/tty.m64-12ab") << 12u;
    QTest::newRow("letters, then digits") << QByteArray("/dev/tty.m64-ab12") << 0u;
    QTest::newRow("no digits") << QByteArray("/dev/tty.m64-port") << 0u;
    QTest::newRow("short") << QByteArray("42") << 42u;
    QTest::newRow("empty") << QByteArray() << 0u;
}

void tst_GridProtocol::serialNumberBeginsTheLastFourCharacters()
{
    QFETCH(QByteArray, path);
    QFETCH(unsigned, number);
    QCOMPARE(gridSerialNumber(path.toStdString()), number);
}

QTEST_APPLESS_MAIN(tst_GridProtocol)
#include "tst_GridProtocol.moc"

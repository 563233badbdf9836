#include <QWUtilities/controllers/grid/GridFrame.h>
#include <QWUtilities/controllers/grid/GridMapping.h>

#include <QTest>

#include <limits>
#include <thread>

using namespace qw;

Q_DECLARE_METATYPE(QWGridPosition)

namespace
{
constexpr float notANumber = std::numeric_limits<float>::quiet_NaN();
constexpr float infinite = std::numeric_limits<float>::infinity();

/// Indexes of the bytes that are not zero.
QList<int> litBytes(const GridFrame &frame)
{
    QList<int> lit;
    for (unsigned byte = 0; byte < 32; ++byte)
        if (frame.row(byte / 8, byte % 8))
            lit.append(static_cast<int>(byte));
    return lit;
}
} // namespace

class tst_GridFrame : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void positionsNameABitOfAByte_data();
    void positionsNameABitOfAByte();
    void positionsThatNameNoLEDChangeNothing_data();
    void positionsThatNameNoLEDChangeNothing();
    void switchingOffLeavesTheOthers();
    void quadrantsAreCopied();
    void quadrantsBeyondTheFrameAreLeftAlone();
    void changesOfTwoThreadsToOneByteBothCount();

    void positionsAreTurned_data();
    void positionsAreTurned();
    void turningBackGivesTheDevicesPosition();
    void orientationsBeyondThreeTurnNothing();
    void gridWithoutRowsLiesBeyondAllPositions();
};

void tst_GridFrame::positionsNameABitOfAByte_data()
{
    QTest::addColumn<QWGridPosition>("position");
    QTest::addColumn<int>("byte");
    QTest::addColumn<int>("mask");
    QTest::newRow("first") << QWGridPosition{0, 0} << 0 << 0x01;
    QTest::newRow("third row") << QWGridPosition{3, 2} << 2 << 0x08;
    QTest::newRow("last of the first quadrant") << QWGridPosition{7, 7} << 7 << 0x80;
    QTest::newRow("fractions are cut off") << QWGridPosition{3.99f, 2.99f} << 2 << 0x08;
    QTest::newRow("fraction below zero") << QWGridPosition{-0.5f, -0.5f} << 0 << 0x01;
    QTest::newRow("third quadrant") << QWGridPosition{0, 8} << 16 << 0x01;
    QTest::newRow("last row") << QWGridPosition{7, 15} << 23 << 0x80;
    QTest::newRow("just below the lower quadrants") << QWGridPosition{0, 7.9999f} << 7 << 0x01;
    QTest::newRow("column 32 comes round") << QWGridPosition{32, 0} << 8 << 0x01;
    QTest::newRow("column 39") << QWGridPosition{39, 8} << 24 << 0x80;
    QTest::newRow("column -32 comes round") << QWGridPosition{-32, 1} << 1 << 0x01;
    QTest::newRow("row above the second quadrant is in the first") << QWGridPosition{32, -1} << 7 << 0x01;
    QTest::newRow("row 130 counts as -126") << QWGridPosition{0, 130} << 10 << 0x01;
    QTest::newRow("row 256 counts as 0") << QWGridPosition{0, 256} << 16 << 0x01;
}

void tst_GridFrame::positionsNameABitOfAByte()
{
    QFETCH(QWGridPosition, position);
    QFETCH(int, byte);
    QFETCH(int, mask);
    GridFrame frame;
    QVERIFY(!frame.led(position));
    frame.setLED(true, position);
    QVERIFY(frame.led(position));
    QCOMPARE(litBytes(frame), QList<int>{byte});
    QCOMPARE(frame.row(static_cast<unsigned>(byte) / 8, static_cast<unsigned>(byte) % 8), mask);
    frame.setLED(false, position);
    QVERIFY(litBytes(frame).isEmpty());
}

void tst_GridFrame::positionsThatNameNoLEDChangeNothing_data()
{
    QTest::addColumn<QWGridPosition>("position");
    for (int x = 8; x < 16; ++x)
        QTest::addRow("column %d", x) << QWGridPosition{static_cast<float>(x), 2};
    QTest::newRow("column -1") << QWGridPosition{-1, 0};
    QTest::newRow("row before the frame") << QWGridPosition{0, -1};
    QTest::newRow("seven rows before the frame") << QWGridPosition{7, -7};
    QTest::newRow("no number across") << QWGridPosition{notANumber, 0};
    QTest::newRow("no number down") << QWGridPosition{0, notANumber};
    QTest::newRow("infinite") << QWGridPosition{infinite, infinite};
    QTest::newRow("infinitely negative") << QWGridPosition{-infinite, -infinite};
    QTest::newRow("beyond integers") << QWGridPosition{3e9f, 0};
}

void tst_GridFrame::positionsThatNameNoLEDChangeNothing()
{
    QFETCH(QWGridPosition, position);
    GridFrame frame;
    frame.setLED(true, position);
    QVERIFY(litBytes(frame).isEmpty());
    const GridRows full{255, 255, 255, 255, 255, 255, 255, 255};
    for (unsigned quadrant = 0; quadrant < 4; ++quadrant)
        frame.setRows(full.data(), quadrant);
    QVERIFY(!frame.led(position));
    frame.setLED(false, position);
    for (unsigned quadrant = 0; quadrant < 4; ++quadrant)
        QCOMPARE(frame.rows(quadrant), full);
}

void tst_GridFrame::switchingOffLeavesTheOthers()
{
    GridFrame frame;
    for (int x = 0; x < 8; ++x)
        frame.setLED(true, {static_cast<float>(x), 4});
    frame.setLED(false, {3, 4});
    QCOMPARE(frame.row(0, 4), 0xF7);
    frame.clear();
    QVERIFY(litBytes(frame).isEmpty());
}

void tst_GridFrame::quadrantsAreCopied()
{
    GridFrame frame;
    const GridRows rows{1, 2, 3, 4, 5, 6, 7, 8};
    frame.setRows(rows.data(), 2);
    QCOMPARE(frame.rows(2), rows);
    QCOMPARE(litBytes(frame), (QList<int>{16, 17, 18, 19, 20, 21, 22, 23}));
}

void tst_GridFrame::quadrantsBeyondTheFrameAreLeftAlone()
{
    GridFrame frame;
    const GridRows rows{1, 2, 3, 4, 5, 6, 7, 8};
    for (const unsigned quadrant : {4u, 5u, 0x20000000u, 0xFFFFFFFFu})
        frame.setRows(rows.data(), quadrant);
    QVERIFY(litBytes(frame).isEmpty());
}

void tst_GridFrame::changesOfTwoThreadsToOneByteBothCount()
{
    constexpr int rounds = 2'000;
    GridFrame frame;
    const auto toggle = [&frame](float x) {
        for (int i = 0; i < rounds; ++i)
            frame.setLED(i % 2 == 0, {x, 0});
        frame.setLED(true, {x, 0});
    };
    std::thread other(toggle, 1.0f);
    toggle(2.0f);
    other.join();
    QCOMPARE(frame.row(0, 0), 0x06);
}

void tst_GridFrame::positionsAreTurned_data()
{
    QTest::addColumn<int>("orientation");
    QTest::addColumn<int>("origin");
    QTest::addColumn<QWGridPosition>("device"); // on 8 rows and 16 columns
    QTest::addColumn<QWGridPosition>("application");
    QTest::newRow("as it is") << 0 << 0 << QWGridPosition{3, 2} << QWGridPosition{3, 2};
    QTest::newRow("quarter turn") << 1 << 0 << QWGridPosition{3, 2} << QWGridPosition{5, 3};
    QTest::newRow("half turn") << 2 << 0 << QWGridPosition{3, 2} << QWGridPosition{12, 5};
    QTest::newRow("three quarters") << 3 << 0 << QWGridPosition{3, 2} << QWGridPosition{2, 12};
    QTest::newRow("flipped") << 0 << 1 << QWGridPosition{3, 2} << QWGridPosition{3, 5};
    QTest::newRow("quarter turn, flipped by rows") << 1 << 1 << QWGridPosition{3, 2} << QWGridPosition{5, 4};
    QTest::newRow("half turn, flipped") << 2 << 1 << QWGridPosition{3, 2} << QWGridPosition{12, 2};
    QTest::newRow("three quarters, flipped by rows") << 3 << 1 << QWGridPosition{3, 2} << QWGridPosition{2, -5};
    QTest::newRow("any other origin flips nothing") << 0 << -1 << QWGridPosition{3, 2} << QWGridPosition{3, 2};
    QTest::newRow("column that came in negative") << 2 << 0 << QWGridPosition{-6, 3} << QWGridPosition{21, 4};
}

void tst_GridFrame::positionsAreTurned()
{
    QFETCH(int, orientation);
    QFETCH(int, origin);
    QFETCH(QWGridPosition, device);
    QFETCH(QWGridPosition, application);
    const GridMapping mapping{.orientation = static_cast<std::uint8_t>(orientation),
                              .origin = static_cast<std::int8_t>(origin),
                              .rows = 8,
                              .columns = 16};
    QCOMPARE(mapping.transformed(device), application);
    QCOMPARE(mapping.untransformed(application), device);
}

void tst_GridFrame::turningBackGivesTheDevicesPosition()
{
    for (int orientation = 0; orientation < 5; ++orientation)
        for (const std::int8_t origin : {0, 1, 2})
            for (int x = -8; x < 16; ++x)
                for (int y = 0; y < 16; ++y) {
                    const GridMapping mapping{static_cast<std::uint8_t>(orientation), origin, 8, 8};
                    const QWGridPosition position{static_cast<float>(x), static_cast<float>(y)};
                    QCOMPARE(mapping.untransformed(mapping.transformed(position)), position);
                }
}

void tst_GridFrame::orientationsBeyondThreeTurnNothing()
{
    const GridMapping mapping{.orientation = 4, .origin = 0, .rows = 8, .columns = 8};
    QCOMPARE(mapping.transformed({3, 2}), (QWGridPosition{3, 2}));
}

void tst_GridFrame::gridWithoutRowsLiesBeyondAllPositions()
{
    const GridMapping mapping{.orientation = 2, .origin = 0, .rows = 0, .columns = 0};
    QCOMPARE(mapping.transformed({0, 0}), (QWGridPosition{4294967295.0f, 4294967295.0f}));
    GridFrame frame;
    frame.setLED(true, mapping.untransformed({0, 0}));
    QVERIFY(litBytes(frame).isEmpty());
}

QTEST_APPLESS_MAIN(tst_GridFrame)
#include "tst_GridFrame.moc"

#include "Sounds.h"

#include <audio/TestTone.h>

#include <QTest>

using demo::WaveformSummary;

class tst_WaveformSummary : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void columnsHoldPeaksAndEffectiveLevel_data();
    void columnsHoldPeaksAndEffectiveLevel();
    void noPeakIsLostAtAnyWidth_data();
    void noPeakIsLostAtAnyWidth();
    void columnsBeyondTheEndAreSilent();
    void columnsBeginWhereTheyAreAskedTo_data();
    void columnsBeginWhereTheyAreAskedTo();
    void moreColumnsThanFramesShowEachFrame();
    void testToneIsLoudEnoughAndNeverClips();
};

void tst_WaveformSummary::columnsHoldPeaksAndEffectiveLevel_data()
{
    QTest::addColumn<int>("frames");
    QTest::newRow("from samples") << 4800;
    QTest::newRow("from buckets") << 480000;
}

void tst_WaveformSummary::columnsHoldPeaksAndEffectiveLevel()
{
    QFETCH(int, frames);
    const demo::Sound sound = sounds::sine(1000, 0.5f, 1, frames);
    const auto columns = WaveformSummary(sound).columns(demo::SampleStore(sound), 0, 0, frames, 20);
    QCOMPARE(columns.size(), size_t(20));
    for (const auto &column : columns) {
        QVERIFY(std::abs(column.greatest - 0.5f) < 0.01f);
        QVERIFY(std::abs(column.least + 0.5f) < 0.01f);
        QVERIFY(std::abs(column.effective - 0.3536f) < 0.01f);
    }
}

void tst_WaveformSummary::noPeakIsLostAtAnyWidth_data()
{
    QTest::addColumn<int>("width");
    for (const int width : {1, 7, 100, 777, 1000, 3001, 20000})
        QTest::addRow("%d", width) << width;
}

void tst_WaveformSummary::noPeakIsLostAtAnyWidth()
{
    QFETCH(int, width);
    demo::Sound sound = sounds::constant({0.0f}, 100001);
    for (const size_t place : {0, 255, 256, 4711, 99999, 100000})
        sound.channels[0][place] = 1;
    const WaveformSummary summary(sound);
    for (const size_t place : {0, 255, 256, 4711, 99999, 100000}) {
        const auto columns = summary.columns(demo::SampleStore(sound), 0, 0, sound.frames(), width);
        size_t column = 0; // the last one that begins at or before the place
        while (column + 1 < columns.size() &&
               static_cast<size_t>(sound.frames()) * (column + 1) / columns.size() <= place)
            ++column;
        QCOMPARE(columns[column].greatest, 1.0f);
    }
}

void tst_WaveformSummary::columnsBeyondTheEndAreSilent()
{
    const demo::Sound sound = sounds::constant({0.5f}, 1000);
    const auto columns = WaveformSummary(sound).columns(demo::SampleStore(sound), 0, 0, 2000, 10);
    QCOMPARE(columns[4].greatest, 0.5f);
    QCOMPARE(columns[5].greatest, 0.0f);
    QCOMPARE(columns[9].effective, 0.0f);
}

void tst_WaveformSummary::columnsBeginWhereTheyAreAskedTo_data()
{
    QTest::addColumn<qint64>("frames");
    QTest::newRow("from samples") << qint64(1000);
    QTest::newRow("from buckets") << qint64(102400);
}

void tst_WaveformSummary::columnsBeginWhereTheyAreAskedTo()
{
    QFETCH(qint64, frames);
    demo::Sound sound = sounds::constant({0.25f}, 3 * frames);
    std::fill_n(sound.channels[0].begin() + frames, frames, 0.75f);
    const auto columns = WaveformSummary(sound).columns(demo::SampleStore(sound), 0, frames / 2, 2 * frames, 4);
    QCOMPARE(columns[0].greatest, 0.25f);
    QCOMPARE(columns[1].greatest, 0.75f);
    QCOMPARE(columns[2].greatest, 0.75f);
    QCOMPARE(columns[3].least, 0.25f);
}

void tst_WaveformSummary::moreColumnsThanFramesShowEachFrame()
{
    demo::Sound sound = sounds::constant({0.0f}, 3);
    sound.channels[0] = {0.1f, 0.2f, 0.3f};
    const auto columns = WaveformSummary(sound).columns(demo::SampleStore(sound), 0, 0, 3, 9);
    for (size_t i = 0; i < columns.size(); ++i)
        QCOMPARE(columns[i].greatest, sound.channels[0][i / 3]);
}

void tst_WaveformSummary::testToneIsLoudEnoughAndNeverClips()
{
    const demo::Clip tone(demo::makeTestTone());
    QCOMPARE(tone.store.seconds(), 4.0);
    QVERIFY(tone.peak > 0.4f && tone.peak < 0.8f);
    QCOMPARE(demo::makeTestTone().channels, tone.store.sound().channels);
}

QTEST_APPLESS_MAIN(tst_WaveformSummary)
#include "tst_WaveformSummary.moc"

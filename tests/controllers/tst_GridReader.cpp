#include <QWPlatform/linux/system/LinuxClock.h>
#include <QWUtilities/controllers/grid/GridReader.h>

#include <QElapsedTimer>
#include <QTest>

using qw::GridReader;
using namespace std::chrono_literals;

namespace
{
platform::LinuxClock &linuxClock()
{
    static platform::LinuxClock made;
    return made;
}
} // namespace

class tst_GridReader : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void runsOnAThreadOfItsOwn();
    void finishesSomeTimeAfterItWasCancelled();
    void cancellingDoesNotShortenARest();
    void goingEndsARest();
    void restsLastAsLongAsTheyShould();
};

void tst_GridReader::runsOnAThreadOfItsOwn()
{
    std::atomic<std::thread::id> thread;
    std::atomic<GridReader *> given = nullptr;
    GridReader reader([&](GridReader &self) {
        thread = std::this_thread::get_id();
        given = &self;
    });
    QTRY_VERIFY(reader.hasFinished());
    QVERIFY(thread.load() != std::this_thread::get_id());
    QCOMPARE(given.load(), &reader);
}

void tst_GridReader::finishesSomeTimeAfterItWasCancelled()
{
    GridReader reader([](GridReader &self) {
        while (!self.isCancelled())
            linuxClock().sleep(1ms, self.ending());
    });
    QVERIFY(!reader.hasFinished());
    reader.cancel();
    QTRY_VERIFY(reader.hasFinished());
}

void tst_GridReader::cancellingDoesNotShortenARest()
{
    std::atomic<bool> isResting = false;
    std::atomic<qint64> rested = 0;
    GridReader reader([&](GridReader &self) {
        const qint64 start = linuxClock().monotonicNanoseconds();
        isResting = true;
        linuxClock().sleep(100ms, self.ending());
        rested = linuxClock().monotonicNanoseconds() - start;
    });
    QTRY_VERIFY(isResting);
    reader.cancel();
    QTRY_VERIFY(reader.hasFinished());
    QVERIFY(rested >= 100'000'000);
}

void tst_GridReader::goingEndsARest()
{
    std::atomic<bool> isResting = false;
    QElapsedTimer time;
    time.start();
    {
        GridReader reader([&](GridReader &self) {
            isResting = true;
            linuxClock().sleep(1h, self.ending());
        });
        QTRY_VERIFY(isResting);
    }
    QVERIFY(time.elapsed() < 60'000);
}

void tst_GridReader::restsLastAsLongAsTheyShould()
{
    for (const auto rest : {1ms, 20ms}) {
        for (const bool canStop : {false, true}) {
            std::stop_source stop;
            const qint64 start = linuxClock().monotonicNanoseconds();
            linuxClock().sleep(rest, canStop ? stop.get_token() : std::stop_token());
            QVERIFY(linuxClock().monotonicNanoseconds() - start >= std::chrono::nanoseconds(rest).count());
        }
    }
}

QTEST_GUILESS_MAIN(tst_GridReader)
#include "tst_GridReader.moc"

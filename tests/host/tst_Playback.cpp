#include "Sounds.h"

#include <app/Playback.h>
#include <fakes/FakeSystem.h>
#include <fakes/QWTestMain.h>

#include <QSignalSpy>

using namespace std::chrono_literals;

/// The play head runs by the clock, which the test advances.
class tst_Playback : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void headFollowsTheClock();
    void itEndsAtTheEndOfTheRange();
    void stoppingStaysWhereItIs();
    void abandonedItSaysNoPlace();
    void levelIsThatOfTheLastMoments();
};

static demo::ClipPointer twoHalves()
{
    demo::Sound sound = sounds::constant({0.25f, 0.0f}, 96000);
    std::fill(sound.channels[1].begin() + 48000, sound.channels[1].end(), -0.75f);
    return std::make_shared<const demo::Clip>(sound);
}

void tst_Playback::headFollowsTheClock()
{
    FakeSystem system;
    const platform::SystemScope scope(system);
    demo::Playback playback;
    QSignalSpy moves(&playback, &demo::Playback::moved);
    playback.start(twoHalves(), {0.5, 1.5});
    QCOMPARE(moves.takeFirst()[0].toDouble(), 0.5);
    system.clock.advance(250ms);
    QTRY_VERIFY(!moves.isEmpty() && moves.last()[0].toDouble() == 0.75);
    QVERIFY(playback.isPlaying());
}

void tst_Playback::itEndsAtTheEndOfTheRange()
{
    FakeSystem system;
    const platform::SystemScope scope(system);
    demo::Playback playback;
    QSignalSpy moves(&playback, &demo::Playback::moved);
    playback.start(twoHalves(), {0.5, 1.5});
    system.clock.advance(5s);
    QTRY_VERIFY(!playback.isPlaying());
    QCOMPARE(moves.last()[0].toDouble(), 1.5);
    QCOMPARE(moves.last()[1].toFloat(), 0.0f);
}

void tst_Playback::stoppingStaysWhereItIs()
{
    FakeSystem system;
    const platform::SystemScope scope(system);
    demo::Playback playback;
    playback.stop(); // nothing plays yet
    playback.start(twoHalves(), {0, 2});
    QSignalSpy moves(&playback, &demo::Playback::moved);
    system.clock.advance(100ms);
    playback.stop();
    QCOMPARE(moves.last()[0].toDouble(), 0.1);
    QVERIFY(!playback.isPlaying());
}

/// Where it was in the other sound means nothing in this one.
void tst_Playback::abandonedItSaysNoPlace()
{
    FakeSystem system;
    const platform::SystemScope scope(system);
    demo::Playback playback;
    QSignalSpy states(&playback, &demo::Playback::playingChanged);
    playback.start(twoHalves(), {0, 2});
    QSignalSpy moves(&playback, &demo::Playback::moved);
    system.clock.advance(100ms);
    playback.abandon();
    QVERIFY(!playback.isPlaying());
    QVERIFY(moves.isEmpty());
    QCOMPARE(states.size(), 2);
    QCOMPARE(states.last()[0].toBool(), false);
}

void tst_Playback::levelIsThatOfTheLastMoments()
{
    FakeSystem system;
    const platform::SystemScope scope(system);
    demo::Playback playback;
    QSignalSpy moves(&playback, &demo::Playback::moved);
    playback.start(twoHalves(), {0.9, 2});
    QCOMPARE(moves.last()[1].toFloat(), 0.25f);
    system.clock.advance(200ms);
    QTRY_COMPARE(moves.last()[1].toFloat(), 0.75f);
}

QW_TEST_MAIN(tst_Playback)
#include "tst_Playback.moc"

#include "Sounds.h"

#include <audio/SoundEdits.h>

#include <QTest>

using demo::FrameRange;
using demo::Sound;

using Samples = std::vector<float>;
using Channels = std::vector<Samples>;
Q_DECLARE_METATYPE(Channels)

class tst_SoundEdits : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void editsChangeTheirPartOnly_data();
    void editsChangeTheirPartOnly();
    void fadesRunFromSilenceToFull();
    void normalisedPartPeaksAtMinusOneDecibel();
    void normalisingSilenceLeavesIt();
    void gainIsInDecibels();
    void trimmingSilenceMayLeaveNothing();
    void monoSoundKeepsItsOneChannel();
    void partIsReplaced_data();
    void partIsReplaced();
    void unknownNameIsNoEdit();
};

static Sound sound(const Channels &channels)
{
    Sound made;
    made.channels = channels;
    return made;
}

void tst_SoundEdits::editsChangeTheirPartOnly_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<Channels>("expected");
    // Done to frames 1 to 3 of { 1 2 3 4 } and { 5 6 7 8 }.
    QTest::newRow("reverse") << "reverse" << Channels{{1, 3, 2, 4}, {5, 7, 6, 8}};
    QTest::newRow("invert") << "invert" << Channels{{1, -2, -3, 4}, {5, -6, -7, 8}};
    QTest::newRow("silence") << "silence" << Channels{{1, 0, 0, 4}, {5, 0, 0, 8}};
    QTest::newRow("swap") << "swapChannels" << Channels{{1, 6, 7, 4}, {5, 2, 3, 8}};
    QTest::newRow("mono") << "mixToMono" << Channels{{1, 4, 5, 4}, {5, 4, 5, 8}};
    QTest::newRow("offset") << "removeOffset" << Channels{{1, -0.5f, 0.5f, 4}, {5, -0.5f, 0.5f, 8}};
    QTest::newRow("fade in") << "fadeIn" << Channels{{1, 0, 3, 4}, {5, 0, 7, 8}};
    QTest::newRow("fade out") << "fadeOut" << Channels{{1, 2, 0, 4}, {5, 6, 0, 8}};
    QTest::newRow("trim") << "trimToSelection" << Channels{{2, 3}, {6, 7}};
    QTest::newRow("delete") << "delete" << Channels{{1, 4}, {5, 8}};
}

void tst_SoundEdits::editsChangeTheirPartOnly()
{
    QFETCH(QString, name);
    const demo::SoundEdit *const edit = demo::SoundEdits::named(name);
    QVERIFY(edit);
    Sound changed = sound({{1, 2, 3, 4}, {5, 6, 7, 8}});
    edit->apply(changed, {1, 3});
    QTEST(changed.channels, "expected");
}

void tst_SoundEdits::fadesRunFromSilenceToFull()
{
    Sound changed = sounds::constant({0.5f}, 101);
    demo::SoundEdits::named(u"fadeIn")->apply(changed, {0, 101});
    QCOMPARE(changed.channels[0].front(), 0.0f);
    QCOMPARE(changed.channels[0].back(), 0.5f);
    QVERIFY(std::abs(changed.channels[0][50] - 0.35355f) < 0.001f); // 3 dB below
    QVERIFY(std::ranges::is_sorted(changed.channels[0]));
}

void tst_SoundEdits::normalisedPartPeaksAtMinusOneDecibel()
{
    Sound changed = sound({{0.1f, 0.2f, -0.4f}, {0.1f, 0.1f, 0.1f}});
    demo::SoundEdits::named(u"normalise")->apply(changed, {0, 3});
    QVERIFY(std::abs(changed.channels[0][2] + 0.89125f) < 0.001f);
    QVERIFY(std::abs(changed.channels[1][0] - 0.22281f) < 0.001f); // all channels alike
}

void tst_SoundEdits::normalisingSilenceLeavesIt()
{
    Sound changed = sound({{0, 0}});
    demo::SoundEdits::named(u"normalise")->apply(changed, {0, 2});
    QCOMPARE(changed.channels, (Channels{{0, 0}}));
}

void tst_SoundEdits::gainIsInDecibels()
{
    Sound changed = sound({{0.5f, 0.5f}});
    demo::SoundEdits::changeGain(changed, {1, 2}, 6);
    QCOMPARE(changed.channels[0][0], 0.5f);
    QVERIFY(std::abs(changed.channels[0][1] - 0.99763f) < 0.001f);
    demo::SoundEdits::changeGain(changed, {1, 2}, -6);
    QVERIFY(std::abs(changed.channels[0][1] - 0.5f) < 0.001f);
}

void tst_SoundEdits::trimmingSilenceMayLeaveNothing()
{
    const demo::SoundEdit *const trim = demo::SoundEdits::named(u"trimSilence");
    Sound changed = sound({{0, 0, 0.5f, 0, 0.0001f}, {0, -0.5f, 0, 0, 0}});
    trim->apply(changed, {0, 5});
    QCOMPARE(changed.channels, (Channels{{0, 0.5f}, {-0.5f, 0}}));
    Sound silent = sound({{0, 0}});
    trim->apply(silent, {0, 2});
    QVERIFY(silent.isEmpty());
}

void tst_SoundEdits::monoSoundKeepsItsOneChannel()
{
    Sound changed = sound({{1, 2}});
    demo::SoundEdits::named(u"swapChannels")->apply(changed, {0, 2});
    demo::SoundEdits::named(u"mixToMono")->apply(changed, {0, 2});
    QCOMPARE(changed.channels, (Channels{{1, 2}}));
}

void tst_SoundEdits::partIsReplaced_data()
{
    QTest::addColumn<Channels>("before");
    QTest::addColumn<int>("first");
    QTest::addColumn<Channels>("other");
    QTest::addColumn<Channels>("after");
    const Channels mono{{1, 2, 3, 4}};
    QTest::newRow("as long") << mono << 1 << Channels{{8, 9}} << Channels{{1, 8, 9, 4}};
    QTest::newRow("rings on over the rest") << mono << 1 << Channels{{8, 9, 7, 7}} << Channels{{1, 8, 9, 4}};
    QTest::newRow("rings on at the end") << mono << 2 << Channels{{8, 9, 7}} << Channels{{1, 2, 8, 9, 7}};
    QTest::newRow("becomes stereo") << mono << 1 << Channels{{8, 9}, {6, 5}} << Channels{{1, 8, 9, 4}, {1, 6, 5, 4}};
    QTest::newRow("one channel for two") << Channels{{1, 2, 3, 4}, {5, 6, 7, 8}} << 1 << Channels{{0, 9}}
                                         << Channels{{1, 0, 9, 4}, {5, 0, 9, 8}};
    QTest::newRow("shorter") << mono << 1 << Channels{{8}} << Channels{{1, 8, 3, 4}};
}

void tst_SoundEdits::partIsReplaced()
{
    QFETCH(Channels, before);
    QFETCH(int, first);
    QFETCH(Channels, other);
    Sound changed = sound(before);
    demo::SoundEdits::replace(changed, {first, first + 2}, sound(other));
    QTEST(changed.channels, "after");
}

void tst_SoundEdits::unknownNameIsNoEdit()
{
    QVERIFY(!demo::SoundEdits::named(u""));
    QVERIFY(!demo::SoundEdits::named(u"Reverse"));
}

QTEST_APPLESS_MAIN(tst_SoundEdits)
#include "tst_SoundEdits.moc"

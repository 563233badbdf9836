#include "Sounds.h"

#include <audio/SampleFile.h>
#include <audio/SampleStore.h>
#include <audio/SoundEdits.h>

#include <QTemporaryDir>
#include <QTest>

#include <optional>

using demo::FrameRange;
using demo::SampleStore;
using demo::Sound;

/// What the states of a sound keep, and what they share.
class tst_SampleStore : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void soundComesBackAsItWas();
    void partsCanBeRead();
    void samplesAreOnDiskAndGoWithTheStore();
    void withoutADiskTheyAreInMemory();
    void changeOfAPartKeepsThatPartOnly_data();
    void changeOfAPartKeepsThatPartOnly();
    void sharedSamplesOutliveTheirFirstState();
    void otherChannelsShareNothing();

private:
    std::optional<QTemporaryDir> m_folder;
};

/// Every frame of every channel is another value.
static Sound ramp(int channels, qint64 frames)
{
    Sound sound;
    float value = 0;
    for (int channel = 0; channel < channels; ++channel) {
        auto &samples = sound.channels.emplace_back();
        for (qint64 frame = 0; frame < frames; ++frame)
            samples.push_back(value += 1.0f / 1024);
    }
    return sound;
}

void tst_SampleStore::init()
{
    m_folder.emplace();
    qputenv("TMPDIR", m_folder->path().toLocal8Bit());
}

void tst_SampleStore::cleanup()
{
    qunsetenv("TMPDIR");
}

void tst_SampleStore::soundComesBackAsItWas()
{
    Sound sound = ramp(2, 200'000);
    sound.sampleRate = 44100;
    const SampleStore store(sound);
    QCOMPARE(store.sampleRate(), 44100.0);
    QCOMPARE(store.channelCount(), 2);
    QCOMPARE(store.frames(), 200'000);
    QCOMPARE(store.sound().channels, sound.channels);
    QCOMPARE(store.sound().sampleRate, 44100.0);
    QCOMPARE(SampleStore(Sound()).frames(), 0);
}

void tst_SampleStore::partsCanBeRead()
{
    const Sound sound = ramp(2, 1000);
    const SampleStore store(sound);
    const auto &samples = sound.channels[1];
    QCOMPARE(store.samples(1, 10, 20), std::vector<float>(samples.begin() + 10, samples.begin() + 20));
    QCOMPARE(store.samples(1, 1000, 1000), std::vector<float>());
}

/// A file without a name, or one that goes at the end.
void tst_SampleStore::samplesAreOnDiskAndGoWithTheStore()
{
    {
        const Sound sound = ramp(1, 10);
        const demo::SampleFile file({std::span(sound.channels[0])});
        QVERIFY(file.isOnDisk());
    }
    QVERIFY(QDir(m_folder->path()).isEmpty());
}

void tst_SampleStore::withoutADiskTheyAreInMemory()
{
    qputenv("TMPDIR", m_folder->filePath("nowhere").toLocal8Bit());
    const Sound sound = ramp(2, 1000);
    const demo::SampleFile file({std::span(sound.channels[0]), std::span(sound.channels[1])});
    QVERIFY(!file.isOnDisk());
    std::vector<float> part(5);
    file.read(1, 7, part);
    QCOMPARE(part, std::vector<float>(sound.channels[1].begin() + 7, sound.channels[1].begin() + 12));
    QCOMPARE(SampleStore(sound).sound().channels, sound.channels);
}

void tst_SampleStore::changeOfAPartKeepsThatPartOnly_data()
{
    QTest::addColumn<QString>("edit");
    QTest::addColumn<int>("first");
    QTest::addColumn<int>("last");
    QTest::addColumn<int>("kept");
    QTest::newRow("in the middle") << "invert" << 100'000 << 100'100 << 100;
    QTest::newRow("at the start") << "invert" << 0 << 7 << 7;
    QTest::newRow("at the end") << "silence" << 199'990 << 200'000 << 10;
    QTest::newRow("all") << "invert" << 0 << 200'000 << 200'000;
    QTest::newRow("deleted") << "delete" << 5000 << 150'000 << 0;
    QTest::newRow("deleted at the start") << "delete" << 0 << 150'000 << 0;
    QTest::newRow("trimmed to the front") << "trimToSelection" << 0 << 150'000 << 0;
}

void tst_SampleStore::changeOfAPartKeepsThatPartOnly()
{
    QFETCH(QString, edit);
    QFETCH(int, first);
    QFETCH(int, last);
    Sound sound = ramp(2, 200'000);
    const SampleStore before(sound);
    QCOMPARE(before.ownFrames(), 200'000);
    demo::SoundEdits::named(edit)->apply(sound, {first, last});
    const SampleStore after(sound, &before);
    QTEST(int(after.ownFrames()), "kept");
    QCOMPARE(after.sound().channels, sound.channels);
    demo::SoundEdits::changeGain(sound, {after.frames() / 4, after.frames() / 2}, 1); // from the pieces again
    QCOMPARE(SampleStore(sound, &after).sound().channels, sound.channels);
}

void tst_SampleStore::sharedSamplesOutliveTheirFirstState()
{
    Sound sound = ramp(1, 1000);
    auto before = std::make_unique<SampleStore>(sound);
    sound.channels[0][500] = -1;
    const SampleStore after(sound, before.get());
    before.reset();
    QCOMPARE(after.sound().channels, sound.channels);
}

void tst_SampleStore::otherChannelsShareNothing()
{
    const SampleStore mono(ramp(1, 1000));
    const Sound stereo = ramp(2, 1000);
    const SampleStore store(stereo, &mono);
    QCOMPARE(store.ownFrames(), 1000);
    QCOMPARE(store.sound().channels, stereo.channels);
}

QTEST_APPLESS_MAIN(tst_SampleStore)
#include "tst_SampleStore.moc"

#include "Sounds.h"

#include <audio/SoundFile.h>
#include <audio/WorkProgress.h>

#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <QtEndian>

#include <limits>
#include <sys/stat.h>

using demo::Sound;
using demo::WorkProgress;
namespace SoundFile = demo::SoundFile;

Q_DECLARE_METATYPE(SoundFile::Format)

class tst_SoundFile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void whatIsWrittenIsReadAgain_data();
    void whatIsWrittenIsReadAgain();
    void loudSamplesSurviveInFloatAndAreClippedInWholeNumbers();
    void roundTripsChangeNoSample_data();
    void roundTripsChangeNoSample();
    void nameSaysTheContainer_data();
    void nameSaysTheContainer();
    void rateThatNoSoundHasIsRefused_data();
    void rateThatNoSoundHasIsRefused();
    void garbageIsRefusedInWords_data();
    void garbageIsRefusedInWords();
    void pipeIsRefusedAtOnce();
    void fileCutShortGivesWhatIsThereOrASentence();
    void samplesThatAreNoNumbersAreReadAsSilence();
    void failedWritingLeavesTheOldFileAlone();
    void cancelledReadingEndsWithoutASentence();
    void cancelledWritingLeavesWhatWasThere();

private:
    QString _path(const QString &name) const { return m_folder.filePath(name); }
    void _writeBytes(const QString &path, const QByteArray &bytes) const;
    std::optional<Sound> _read(const QString &path);

    QTemporaryDir m_folder;
    WorkProgress m_progress; ///< Of writing.
    QString m_error;
};

void tst_SoundFile::_writeBytes(const QString &path, const QByteArray &bytes) const
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), bytes.size());
}

std::optional<Sound> tst_SoundFile::_read(const QString &path)
{
    WorkProgress progress;
    m_error.clear();
    return SoundFile::read(path, progress, &m_error);
}

void tst_SoundFile::whatIsWrittenIsReadAgain_data()
{
    QTest::addColumn<SoundFile::Format>("format");
    QTest::addColumn<int>("channels");
    QTest::addColumn<float>("tolerance");
    QTest::newRow("WAV float stereo") << SoundFile::Format::WavFloat << 2 << 0.0f;
    QTest::newRow("WAV 24 mono") << SoundFile::Format::Wav24 << 1 << 2.0e-7f;
    QTest::newRow("AIFF float, six channels") << SoundFile::Format::AiffFloat << 6 << 0.0f;
    QTest::newRow("AIFF 24 stereo") << SoundFile::Format::Aiff24 << 2 << 2.0e-7f;
    QTest::newRow("WAV 16 stereo") << SoundFile::Format::Wav16 << 2 << 1.6e-5f;
    QTest::newRow("AIFF 16 mono") << SoundFile::Format::Aiff16 << 1 << 1.6e-5f;
}

void tst_SoundFile::whatIsWrittenIsReadAgain()
{
    QFETCH(SoundFile::Format, format);
    QFETCH(int, channels);
    QFETCH(float, tolerance);
    const QString path = _path("Grün & \"wild\" 🎵." + SoundFile::extension(format));
    const Sound sound = sounds::sine(440, 0.9f, channels, 40001, 44100);
    QVERIFY2(SoundFile::write(path, sound, format, m_progress, &m_error), qPrintable(m_error));
    const auto read = _read(path);
    QVERIFY2(read, qPrintable(m_error));
    QCOMPARE(read->sampleRate, 44100.0);
    QCOMPARE(read->channelCount(), channels);
    QCOMPARE(read->frames(), sound.frames());
    for (size_t i = 0; i < sound.channels[0].size(); ++i)
        QVERIFY(std::abs(read->channels.back()[i] - sound.channels.back()[i]) <= tolerance);
}

void tst_SoundFile::loudSamplesSurviveInFloatAndAreClippedInWholeNumbers()
{
    const Sound sound = sounds::constant({1.5f, -1.5f}, 100);
    QVERIFY(SoundFile::write(_path("loud.wav"), sound, SoundFile::Format::WavFloat, m_progress, &m_error));
    QCOMPARE(_read(_path("loud.wav"))->channels, sound.channels);
    QVERIFY(!SoundFile::clips(SoundFile::Format::WavFloat));
    for (const auto format : {SoundFile::Format::Wav24, SoundFile::Format::Wav16}) {
        QVERIFY(SoundFile::clips(format));
        QVERIFY(SoundFile::write(_path("loud.wav"), sound, format, m_progress, &m_error));
        const auto clipped = _read(_path("loud.wav"));
        QVERIFY(clipped->channels[0][50] > 0.999f && clipped->channels[0][50] <= 1);
        QVERIFY(clipped->channels[1][50] >= -1 && clipped->channels[1][50] < -0.999f);
    }
}

void tst_SoundFile::roundTripsChangeNoSample_data()
{
    QTest::addColumn<SoundFile::Format>("format");
    QTest::addColumn<int>("bits");
    QTest::newRow("16") << SoundFile::Format::Wav16 << 16;
    QTest::newRow("24") << SoundFile::Format::Aiff24 << 24;
}

/// All steps of 16 bits, or as many of 24, at both ends of the scale too.
void tst_SoundFile::roundTripsChangeNoSample()
{
    QFETCH(SoundFile::Format, format);
    QFETCH(int, bits);
    Sound sound = sounds::constant({0}, 65536);
    for (int step = -32768; step < 32768; ++step) {
        const int sample = bits == 16 ? step : step * 256 + (step & 255);
        sound.channels[0][static_cast<size_t>(step + 32768)] = std::ldexp(static_cast<float>(sample), 1 - bits);
    }
    QVERIFY(SoundFile::write(_path("steps"), sound, format, m_progress, &m_error));
    QCOMPARE(_read(_path("steps"))->channels, sound.channels);
}

void tst_SoundFile::nameSaysTheContainer_data()
{
    using Format = SoundFile::Format;
    QTest::addColumn<QString>("name");
    QTest::addColumn<Format>("chosen");
    QTest::addColumn<Format>("written");
    QTest::newRow("aif") << "a.aif" << Format::AiffFloat << Format::AiffFloat;
    QTest::newRow("other container") << "a.AIFF" << Format::Wav16 << Format::Aiff16;
    QTest::newRow("and back") << "a.b.wav" << Format::Aiff24 << Format::Wav24;
    QTest::newRow("no word of it") << "a" << Format::Aiff24 << Format::Aiff24;
    QTest::newRow("unknown") << "a.wave" << Format::AiffFloat << Format::AiffFloat;
}

void tst_SoundFile::nameSaysTheContainer()
{
    QFETCH(QString, name);
    QFETCH(SoundFile::Format, chosen);
    QVERIFY(SoundFile::extensions().contains(SoundFile::extension(chosen)));
    QTEST(SoundFile::formatFor("/folder.aiff/" + name, chosen), "written");
}

void tst_SoundFile::rateThatNoSoundHasIsRefused_data()
{
    QTest::addColumn<quint32>("rate");
    QTest::addColumn<bool>("isRead");
    QTest::newRow("2 GHz") << 2'000'000'000u << false;
    QTest::newRow("1 Hz") << 1u << false;
    QTest::newRow("as on the telephone") << 8000u << true;
    QTest::newRow("the highest") << quint32(SoundFile::highestRate) << true;
}

void tst_SoundFile::rateThatNoSoundHasIsRefused()
{
    QFETCH(quint32, rate);
    const Sound sound = sounds::constant({0.5f}, 10);
    QVERIFY(SoundFile::write(_path("rate.wav"), sound, SoundFile::Format::Wav16, m_progress, &m_error));
    QFile file(_path("rate.wav"));
    QVERIFY(file.open(QIODevice::ReadWrite) && file.seek(24)); // where the header has it
    const quint32 inFile = qToLittleEndian(rate);
    QCOMPARE(file.write(reinterpret_cast<const char *>(&inFile), sizeof inFile), qint64(sizeof inFile));
    file.close();
    const auto read = _read(_path("rate.wav"));
    QTEST(read.has_value(), "isRead");
    QCOMPARE(m_error, read ? QString() : QString("The file names a sample rate that no sound has."));
}

void tst_SoundFile::garbageIsRefusedInWords_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("sentence");
    const QString notASound = "This is not a sound file that can be read here.";
    QTest::newRow("empty") << QByteArray() << "The file is empty.";
    QTest::newRow("text") << QByteArray("hello, this is no sound at all, just a few words\n").repeated(40) << notASound;
    QTest::newRow("header only") << QByteArray("RIFF\x24\0\0\0WAVE", 12) << notASound;
    QTest::newRow("no samples")
        << QByteArray("RIFF\x24\0\0\0WAVEfmt \x10\0\0\0\x01\0\x01\0\x80\xbb\0\0\0\x77\x01\0\x02\0\x10\0data\0\0\0\0",
                      44)
        << "The file holds no sound.";
}

void tst_SoundFile::garbageIsRefusedInWords()
{
    QFETCH(QByteArray, bytes);
    _writeBytes(_path("garbage.wav"), bytes);
    QVERIFY(!_read(_path("garbage.wav")));
    QTEST(m_error, "sentence");
    QVERIFY(!_read(_path("nowhere.wav")));
    QCOMPARE(m_error, "The file is not there any more.");
}

/// Nobody writes into it, so that who opens it waits without end, and a host that quits waits for him.
void tst_SoundFile::pipeIsRefusedAtOnce()
{
    const QString path = _path("pipe.wav");
    QCOMPARE(::mkfifo(QFile::encodeName(path).constData(), 0600), 0);
    QVERIFY(!_read(path));
    QCOMPARE(m_error, "This is not a sound file that can be read here.");
}

void tst_SoundFile::fileCutShortGivesWhatIsThereOrASentence()
{
    const QString whole = _path("whole.wav");
    QVERIFY(
        SoundFile::write(whole, sounds::sine(440, 0.5f, 2, 500), SoundFile::Format::WavFloat, m_progress, &m_error));
    QFile file(whole);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.readAll();
    for (qsizetype length = 0; length < bytes.size(); length += 7) {
        _writeBytes(_path("cut.wav"), bytes.first(length));
        const auto sound = _read(_path("cut.wav"));
        QVERIFY(sound ? sound->frames() > 0 && sound->frames() <= 500 : !m_error.isEmpty());
    }
}

void tst_SoundFile::samplesThatAreNoNumbersAreReadAsSilence()
{
    Sound sound = sounds::constant({0.5f}, 10);
    sound.channels[0][3] = std::numeric_limits<float>::quiet_NaN();
    sound.channels[0][4] = std::numeric_limits<float>::infinity();
    QVERIFY(SoundFile::write(_path("nan.wav"), sound, SoundFile::Format::WavFloat, m_progress, &m_error));
    const auto read = _read(_path("nan.wav"));
    QVERIFY(read);
    QCOMPARE(read->channels[0][3], 0.0f);
    QCOMPARE(read->channels[0][4], 0.0f);
    QCOMPARE(read->channels[0][5], 0.5f);
}

void tst_SoundFile::failedWritingLeavesTheOldFileAlone()
{
    const Sound old = sounds::constant({0.5f}, 10);
    QVERIFY(SoundFile::write(_path("kept.wav"), old, SoundFile::Format::WavFloat, m_progress, &m_error));
    Sound impossible = sounds::constant({0.25f}, 10);
    impossible.channels.assign(5000, impossible.channels[0]); // more channels than the format can hold
    QVERIFY(!SoundFile::write(_path("kept.wav"), impossible, SoundFile::Format::WavFloat, m_progress, &m_error));
    QVERIFY(!m_error.isEmpty());
    QCOMPARE(_read(_path("kept.wav"))->channels, old.channels);
    QVERIFY(!QFile::exists(_path("kept.wav.part")));
}

void tst_SoundFile::cancelledReadingEndsWithoutASentence()
{
    QVERIFY(SoundFile::write(_path("long.wav"), sounds::constant({0.5f}, 10), SoundFile::Format::WavFloat, m_progress,
                             &m_error));
    WorkProgress progress;
    progress.cancel();
    m_error.clear();
    QVERIFY(!SoundFile::read(_path("long.wav"), progress, &m_error));
    QCOMPARE(m_error, QString());
}

void tst_SoundFile::cancelledWritingLeavesWhatWasThere()
{
    const Sound old = sounds::constant({0.25f}, 100);
    QVERIFY(SoundFile::write(_path("old.wav"), old, SoundFile::Format::WavFloat, m_progress, &m_error));
    m_progress.cancel();
    const Sound other = sounds::constant({0.5f}, 100);
    QVERIFY(!SoundFile::write(_path("old.wav"), other, SoundFile::Format::WavFloat, m_progress, &m_error));
    QCOMPARE(m_error, "");
    QCOMPARE(_read(_path("old.wav"))->channels, old.channels);
    QVERIFY(!QFile::exists(_path("old.wav.part")));
}

QTEST_APPLESS_MAIN(tst_SoundFile)
#include "tst_SoundFile.moc"

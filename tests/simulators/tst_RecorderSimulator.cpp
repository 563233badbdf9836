#include "Curl.h"
#include "SoundReading.h"

#include <QWPlatform/foundation/PropertyList.h>
#include <simulators/recorder/PropertyListText.h>
#include <simulators/recorder/RecorderSimulator.h>
#include <simulators/recorder/takes/MadeUpTakes.h>
#include <simulators/recorder/takes/TakesInFolder.h>

#include <QTemporaryDir>
#include <QTest>

#include <cmath>

using namespace platform;

namespace
{
struct SourceForm
{
    const char *name;
    int format;
    int channels;
    int rate;
};

/// A sound whose samples use all bits that @p form has.
bool writeSource(const QString &path, const SourceForm &form)
{
    SF_INFO info{};
    info.format = form.format;
    info.channels = form.channels;
    info.samplerate = form.rate;
    std::unique_ptr<SNDFILE, int (*)(SNDFILE *)> file(sf_open(QFile::encodeName(path).constData(), SFM_WRITE, &info),
                                                      sf_close);
    std::vector<int> samples(static_cast<size_t>(form.channels * 9001));
    for (size_t i = 0; i < samples.size(); ++i)
        samples[i] = static_cast<int>(static_cast<unsigned>(i + 1) * 2654435761U) / 3;
    return file && sf_writef_int(file.get(), samples.data(), 9001) == 9001;
}

const RecorderFormat &format(const char *code)
{
    return *RecorderFormat::withCode(code);
}
} // namespace

class tst_RecorderSimulator : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { m_recorder.reset(); }

    void listTellsWhatTheTakesAre_data();
    void listTellsWhatTheTakesAre();
    void emptyListIsAList();
    void listOfManyIsServed();
    void blueEditionOffersUncompressedOnly();
    void everyFormatIsForReal_data();
    void everyFormatIsForReal();
    void losslessFormatsOfFilesEqualThem_data();
    void losslessFormatsOfFilesEqualThem();
    void metadataTellsTheTake();
    void unknownThingsAreNotFound_data();
    void unknownThingsAreNotFound();
    void withoutTheProgramItsFormatsAreNotOffered();
    void madeUpTakesAreTheSameEachTime();
    void madeUpTakesHaveTheSizeThatTheListTells();
    void folderIsServedWithTrueValues();
    void downloadsCanBeContinued();
    void temporaryFilesGoWithIt();

private:
    QString _converted(const RecorderTake &take, const RecorderFormat &form);
    QString _downloadAddress(const QString &filename, const QString &code) const
    {
        return QString("%1/download?filename=%2&format=%3").arg(m_recorder->address(), filename, code);
    }

    std::unique_ptr<RecorderSimulator> m_recorder;
};

void tst_RecorderSimulator::init()
{
    m_recorder = std::make_unique<RecorderSimulator>();
    m_recorder->setTakes(MadeUpTakes::takes({.count = 8, .length = 0.7, .withProgram = true}));
    QVERIFY(m_recorder->listen());
}

QString tst_RecorderSimulator::_converted(const RecorderTake &take, const RecorderFormat &form)
{
    std::optional<QString> path;
    m_recorder->convert(take, form, [&path](const QString &made) { path = made; });
    if (!QTest::qWaitFor([&path] { return path.has_value(); }, 60'000))
        qFatal("No end of a conversion");
    return *path;
}

void tst_RecorderSimulator::listTellsWhatTheTakesAre_data()
{
    QTest::addColumn<bool>("isBinary");
    QTest::newRow("XML") << false;
    QTest::newRow("binary") << true;
}

void tst_RecorderSimulator::listTellsWhatTheTakesAre()
{
    QFETCH(const bool, isBinary);
    m_recorder->setList({.isBlue = false, .isBinary = isBinary, .faults = {}});
    const Curl curl = Curl::fetched(m_recorder->address() + "/list.plist");
    QCOMPARE(curl.status, 200);
    QCOMPARE(curl.body.startsWith("bplist"), isBinary);
    const auto list = PropertyList::fromData(curl.body);
    QVERIFY(list);
    QCOMPARE(list->toList().size(), 8);
    for (qsizetype i = 0; i < 8; ++i) {
        const QVariantMap entry = list->toList().at(i).toMap();
        const RecorderTake &take = m_recorder->takes().at(static_cast<size_t>(i));
        QCOMPARE(entry.size(), 11);
        QCOMPARE(entry["title"].toString(), take.title);
        QCOMPARE(entry["filename"].toString(), take.filename);
        QCOMPARE(entry["keywords"].toString(), take.keywords);
        QCOMPARE(entry["creationDate"].toDateTime(), take.creationDate);
        QCOMPARE(entry["modificationDate"].toDateTime(), take.modificationDate);
        QCOMPARE(entry["fileSize"].toLongLong(), take.fileSize);
        QCOMPARE(entry["length"].toDouble(), take.length);
        QCOMPARE(entry["channels"].toInt(), take.channels);
        QCOMPARE(entry["quality"].toInt(), take.quality);
        QCOMPARE(entry["formats"].toStringList(), take.formats);
        QCOMPARE(entry["locked"].typeId(), static_cast<int>(QMetaType::Bool));
        QCOMPARE(entry["locked"].toBool(), take.locked);
    }
}

void tst_RecorderSimulator::emptyListIsAList()
{
    m_recorder->setTakes({});
    const auto list = PropertyList::fromData(Curl::fetched(m_recorder->address() + "/list.plist").body);
    QVERIFY(list);
    QCOMPARE(list->typeId(), static_cast<int>(QMetaType::QVariantList));
    QVERIFY(list->toList().isEmpty());
}

void tst_RecorderSimulator::listOfManyIsServed()
{
    m_recorder->setTakes(MadeUpTakes::takes({.count = 20'000}));
    const Curl curl = Curl::fetched(m_recorder->address() + "/list.plist");
    QCOMPARE(curl.exitCode, 0);
    const auto list = PropertyList::fromData(curl.body);
    QVERIFY(list);
    QCOMPARE(list->toList().size(), 20'000);
    QSet<QString> names;
    for (const RecorderTake &take : m_recorder->takes())
        names += take.filename;
    QCOMPARE(names.size(), 20'000);
}

void tst_RecorderSimulator::blueEditionOffersUncompressedOnly()
{
    m_recorder->setList({.isBlue = true, .isBinary = false, .faults = {}});
    const auto list = PropertyList::fromData(Curl::fetched(m_recorder->address() + "/list.plist").body);
    QVERIFY(list);
    QCOMPARE(list->toList().first().toMap()["formats"].toList(), QVariantList());
    for (const RecorderFormat &form : RecorderFormat::all()) {
        const int status = Curl::fetched(_downloadAddress("take-000001", form.code)).status;
        QCOMPARE(status, form.kind == RecorderFormat::Kind::Uncompressed ? 200 : 404);
    }
}

void tst_RecorderSimulator::everyFormatIsForReal_data()
{
    QTest::addColumn<QString>("filename");
    QTest::addColumn<QByteArray>("code");
    for (const auto &[name, filename] :
         {std::pair("stereo", "take-000001"), {"mono", "take-000004"}, {"6", "take-000007"}})
        for (const RecorderFormat &form : RecorderFormat::all())
            if (form.kind != RecorderFormat::Kind::Metadata)
                QTest::addRow("%s, %s", form.code, name) << QString(filename) << QByteArray(form.code);
}

void tst_RecorderSimulator::everyFormatIsForReal()
{
    QFETCH(const QString, filename);
    QFETCH(const QByteArray, code);
    const auto &takes = m_recorder->takes();
    const RecorderTake &take = *std::ranges::find(takes, filename, &RecorderTake::filename);
    const RecorderFormat *const form = m_recorder->formatOffered(take, code);
    QVERIFY(form);
    const Curl curl = Curl::fetched(_downloadAddress(filename, code));
    QCOMPARE(curl.exitCode, 0);
    QCOMPARE(curl.status, 200);
    const QString path = _converted(take, *form);
    QVERIFY(curl.body == Curl::contentsOf(path));

    const bool isByProgram = form->container == 0;
    const SoundReading sound = isByProgram ? SoundReading::byProgram(path) : SoundReading::of(path);
    QVERIFY(sound.isSound);
    QCOMPARE(sound.channels, take.channels);
    QCOMPARE(sound.rate, take.madeUp.rate);
    const bool isLossy = code == "aac" || code == "podcast" || code == "vorbis";
    QVERIFY(isLossy ? std::abs(sound.length() - take.length) < 0.1 : sound.frames == take.madeUp.frames);
    if (!isLossy)
        QVERIFY(sound.samples == SoundReading::of(_converted(take, format("wav"))).samples);
}

void tst_RecorderSimulator::losslessFormatsOfFilesEqualThem_data()
{
    QTest::addColumn<int>("format");
    QTest::addColumn<int>("channels");
    QTest::addColumn<QStringList>("offered");
    const QStringList all{"aac", "podcast", "appleLossless", "flac", "vorbis"};
    const QStringList lossy{"aac", "podcast", "vorbis"};
    QTest::newRow("8 bits") << (SF_FORMAT_WAV | SF_FORMAT_PCM_U8) << 1 << all;
    QTest::newRow("8 bits with sign") << (SF_FORMAT_AIFF | SF_FORMAT_PCM_S8) << 2 << all;
    QTest::newRow("16 bits") << (SF_FORMAT_AIFF | SF_FORMAT_PCM_16) << 2 << all;
    QTest::newRow("24 bits") << (SF_FORMAT_WAV | SF_FORMAT_PCM_24) << 2 << all;
    QTest::newRow("24 bits, 6 channels") << (SF_FORMAT_CAF | SF_FORMAT_PCM_24) << 6 << all;
    QTest::newRow("32 bits") << (SF_FORMAT_WAV | SF_FORMAT_PCM_32) << 2 << lossy;
    QTest::newRow("float") << (SF_FORMAT_WAV | SF_FORMAT_FLOAT) << 2 << lossy;
    QTest::newRow("double") << (SF_FORMAT_CAF | SF_FORMAT_DOUBLE) << 1 << lossy;
    QTest::newRow("FLAC") << (SF_FORMAT_FLAC | SF_FORMAT_PCM_24) << 2 << all;
    QTest::newRow("3 channels") << (SF_FORMAT_WAV | SF_FORMAT_PCM_16) << 3 << QStringList{"flac", "vorbis"};
    QTest::newRow("9 channels") << (SF_FORMAT_CAF | SF_FORMAT_PCM_16) << 9 << QStringList();
}

void tst_RecorderSimulator::losslessFormatsOfFilesEqualThem()
{
    QFETCH(const int, format);
    QFETCH(const int, channels);
    QFETCH(const QStringList, offered);
    QTemporaryDir folder;
    const QString path = folder.filePath("source");
    QVERIFY(writeSource(path, {"", format, channels, 44100}));
    m_recorder->setTakes(takesInFolder(folder.path(), true));
    QCOMPARE(m_recorder->takes().size(), size_t(1));
    const RecorderTake &take = m_recorder->takes().front();
    QCOMPARE(take.formats, offered);
    const SoundReading source = SoundReading::of(path);
    for (const char *const code : {"aif", "wav", "caf", "flac", "appleLossless"}) {
        const RecorderFormat *const form = m_recorder->formatOffered(take, code);
        if (!form)
            continue;
        const QString made = _converted(take, *form);
        const SoundReading sound = form->container == 0 ? SoundReading::byProgram(made) : SoundReading::of(made);
        QCOMPARE(sound.channels, channels);
        QVERIFY2(sound.samples == source.samples, code);
    }
}

void tst_RecorderSimulator::metadataTellsTheTake()
{
    const RecorderTake &take = m_recorder->takes().front();
    const auto list = PropertyList::fromData(Curl::fetched(_downloadAddress(take.filename, "metaXML")).body);
    QVERIFY(list);
    QCOMPARE(list->toMap()["title"].toString(), take.title);
    QCOMPARE(list->toMap()["length"].toDouble(), take.length);
    const QByteArray text = Curl::fetched(_downloadAddress(take.filename, "metaText")).body;
    QVERIFY(text.startsWith(QByteArray("Title: " + take.title.toUtf8() + "\n")));
}

void tst_RecorderSimulator::unknownThingsAreNotFound_data()
{
    QTest::addColumn<QString>("target");
    for (const char *const target :
         {"/", "/list", "/List.plist", "/download", "/download?filename=take-000001", "/download?format=wav",
          "/download?filename=take-000009&format=wav", "/download?filename=take-000001&format=WAV",
          "/download?filename=take-000001&format=mp3", "/download?filename=take-000001&format=",
          "/download?filename=../take-000001&format=wav", "/download?filename=&format=wav"})
        QTest::newRow(target) << QString(target);
}

void tst_RecorderSimulator::unknownThingsAreNotFound()
{
    QFETCH(const QString, target);
    QCOMPARE(Curl::fetched(m_recorder->address() + target).status, 404);
}

void tst_RecorderSimulator::withoutTheProgramItsFormatsAreNotOffered()
{
    m_recorder = std::make_unique<RecorderSimulator>(QString());
    m_recorder->setTakes(MadeUpTakes::takes({.count = 1, .length = 0.2, .withProgram = false}));
    QVERIFY(m_recorder->listen());
    QCOMPARE(m_recorder->takes().front().formats, QStringList({"flac", "vorbis"}));
    for (const char *const code : {"aac", "podcast", "appleLossless"})
        QCOMPARE(Curl::fetched(_downloadAddress("take-000001", code)).status, 404);
    QCOMPARE(Curl::fetched(_downloadAddress("take-000001", "flac")).status, 200);
}

void tst_RecorderSimulator::madeUpTakesAreTheSameEachTime()
{
    const auto takes = MadeUpTakes::takes({.count = 30, .withProgram = true});
    const auto again = MadeUpTakes::takes({.count = 50, .withProgram = true});
    for (size_t i = 0; i < takes.size(); ++i)
        QCOMPARE(takes[i].listEntry(), again[i].listEntry());
    const QByteArray first = Curl::contentsOf(_converted(m_recorder->takes().front(), format("wav")));
    init();
    QVERIFY(first == Curl::contentsOf(_converted(m_recorder->takes().front(), format("wav"))));
    QVERIFY(first != Curl::contentsOf(_converted(m_recorder->takes().at(1), format("wav"))));
}

void tst_RecorderSimulator::madeUpTakesHaveTheSizeThatTheListTells()
{
    for (const RecorderTake &take : m_recorder->takes())
        QCOMPARE(QFileInfo(_converted(take, format("wav"))).size(), take.fileSize);
}

void tst_RecorderSimulator::folderIsServedWithTrueValues()
{
    QTemporaryDir folder;
    QVERIFY(QDir(folder.path()).mkpath("Album & Co"));
    QVERIFY(writeSource(folder.filePath("Take 10.wav"), {"", SF_FORMAT_WAV | SF_FORMAT_PCM_16, 1, 22050}));
    QVERIFY(writeSource(folder.filePath("Take 2.aif"), {"", SF_FORMAT_AIFF | SF_FORMAT_PCM_24, 2, 48000}));
    QVERIFY(writeSource(folder.filePath("Album & Co/\u00e9t\u00e9.flac"),
                        {"", SF_FORMAT_FLAC | SF_FORMAT_PCM_16, 2, 8000}));
    QFile text(folder.filePath("notes.txt"));
    QVERIFY(text.open(QIODevice::WriteOnly) && text.write("no sound") > 0);
    m_recorder->setTakes(takesInFolder(folder.path(), true));
    const auto list =
        PropertyList::fromData(Curl::fetched(m_recorder->address() + "/list.plist").body).value_or(QVariant()).toList();
    QCOMPARE(list.size(), 3);
    const QVariantMap album = list.at(0).toMap();
    const QVariantMap two = list.at(1).toMap();
    const QVariantMap ten = list.at(2).toMap();
    QCOMPARE(album["title"].toString(), QString("\u00e9t\u00e9"));
    QCOMPARE(album["keywords"].toString(), QString("Album & Co"));
    QCOMPARE(album["quality"].toInt(), 2);
    QCOMPARE(two["title"].toString(), QString("Take 2"));
    QCOMPARE(two["channels"].toInt(), 2);
    QCOMPARE(two["length"].toDouble(), 9001.0 / 48000);
    QCOMPARE(two["quality"].toInt(), 0);
    const QFileInfo file(folder.filePath("Take 2.aif"));
    QCOMPARE(two["fileSize"].toLongLong(), file.size());
    QCOMPARE(two["modificationDate"].toDateTime().toSecsSinceEpoch(), file.lastModified().toSecsSinceEpoch());
    QVERIFY(two["creationDate"].toDateTime() <= two["modificationDate"].toDateTime());
    QCOMPARE(ten["title"].toString(), QString("Take 10"));
    QCOMPARE(ten["channels"].toInt(), 1);
    QCOMPARE(ten["quality"].toInt(), 1);
    for (const QVariant &entry : list)
        QCOMPARE(Curl::fetched(_downloadAddress(entry.toMap()["filename"].toString(), "caf")).status, 200);
}

void tst_RecorderSimulator::downloadsCanBeContinued()
{
    const Curl whole = Curl::fetched(_downloadAddress("take-000001", "flac"));
    const qsizetype at = whole.head.indexOf("ETag: ");
    QVERIFY(at > 0);
    const QByteArray etag = whole.head.mid(at + 6, whole.head.indexOf('\r', at) - at - 6);
    const Curl rest = Curl::fetched(_downloadAddress("take-000001", "flac"),
                                    {"--range", "1000-", "--header", "If-Range: " + QString::fromLatin1(etag)});
    QCOMPARE(rest.status, 206);
    QVERIFY(rest.body == whole.body.mid(1000));
}

void tst_RecorderSimulator::temporaryFilesGoWithIt()
{
    const QString path = _converted(m_recorder->takes().front(), format("aac"));
    QVERIFY(QFile::exists(path));
    QCOMPARE(QDir(QFileInfo(path).path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot).size(), 1);
    m_recorder.reset();
    QVERIFY(!QFile::exists(QFileInfo(path).path()));
}

QTEST_GUILESS_MAIN(tst_RecorderSimulator)
#include "tst_RecorderSimulator.moc"

#include "Curl.h"

#include <simulators/recorder/RecorderSimulator.h>
#include <simulators/recorder/takes/MadeUpTakes.h>

#include <QDir>
#include <QFile>
#include <QTcpSocket>
#include <QTest>

/// Conversions that take long or much.
class tst_TakeConversions : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { m_recorder.reset(); }

    void longConversionsHoldUpNobody();
    void conversionsAreKeptWithinBounds();
    void endsInTheMiddleOfConversions();

private:
    std::unique_ptr<RecorderSimulator> m_recorder;
};

void tst_TakeConversions::init()
{
    m_recorder = std::make_unique<RecorderSimulator>();
    QVERIFY(m_recorder->listen());
}

void tst_TakeConversions::longConversionsHoldUpNobody()
{
    m_recorder->setTakes(MadeUpTakes::takes({.count = 8, .length = 3600, .withProgram = true}));
    QTcpSocket waiting; // an hour of six channels
    waiting.connectToHost("127.0.0.1", m_recorder->port());
    waiting.write("GET /download?filename=take-000007&format=vorbis HTTP/1.1\r\n\r\n");
    QTRY_COMPARE(m_recorder->downloads(), 1);
    QCOMPARE(Curl::fetched(m_recorder->address() + "/list.plist").status, 200);
    QCOMPARE(Curl::fetched(m_recorder->address() + "/download?filename=take-000001&format=metaText").status, 200);
    QCOMPARE(waiting.bytesAvailable(), 0);
}

void tst_TakeConversions::conversionsAreKeptWithinBounds()
{
    const auto takes = MadeUpTakes::takes({.count = 5, .length = 1});
    const qint64 most = takes[3].fileSize + takes[4].fileSize;
    TakeConversions conversions({}, most);
    for (const RecorderTake &take : takes) {
        bool isDone = false;
        conversions.convert(take, *RecorderFormat::withCode("wav"),
                            [&isDone](const QString &path) { isDone = QFile::exists(path); });
        QTRY_VERIFY(isDone);
    }
    qint64 size = 0;
    const QFileInfoList kept = QDir(conversions.folder().path()).entryInfoList(QDir::Files);
    for (const QFileInfo &file : kept)
        size += file.size();
    QVERIFY(size <= most);
    QVERIFY(QFile::exists(conversions.folder().filePath("take-000005-wav.wav")));
    QVERIFY(!QFile::exists(conversions.folder().filePath("take-000001-wav.wav")));
}

void tst_TakeConversions::endsInTheMiddleOfConversions()
{
    m_recorder->setTakes(MadeUpTakes::takes({.count = 8, .length = 36000, .withProgram = true}));
    for (const char *const code : {"wav", "aac", "flac"})
        m_recorder->convert(m_recorder->takes().at(6), *RecorderFormat::withCode(code), [](const QString &) {});
    m_recorder.reset(); // without the hours that it would take
    QVERIFY(!m_recorder);
}

QTEST_GUILESS_MAIN(tst_TakeConversions)
#include "tst_TakeConversions.moc"

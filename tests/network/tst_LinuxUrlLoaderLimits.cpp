#include "AnswersAroundLimit.h"
#include "GeneratingServer.h"
#include "Load.h"

#include <simulators/HttpServer.h>

#include <QFile>

using namespace platform;
using namespace std::chrono_literals;

/// How long a load waits and how much it takes.
class tst_LinuxUrlLoaderLimits : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QVERIFY(m_server.listen()); }

    void silenceTimesOut_data();
    void silenceTimesOut();
    void slowAnswerThatKeepsComingArrives();
    void tooLargeAnswersFail_data();
    void tooLargeAnswersFail();
    void endlessAnswersFailWithoutTakingMemory_data();
    void endlessAnswersFailWithoutTakingMemory();
    void largeAnswerTakesLittleMoreThanItself_data();
    void largeAnswerTakesLittleMoreThanItself();
    void answerThatNeverEndsIsCutAtTheLimit();

private:
    HttpServer m_server;
    LinuxUrlLoader m_loader;
};

void tst_LinuxUrlLoaderLimits::silenceTimesOut_data()
{
    QTest::addColumn<HttpReply>("reply");
    HttpReply never;
    never.neverAnswer = true;
    QTest::newRow("from the start") << never;
    HttpReply half = HttpReply::text(QByteArray(1000, 'x'));
    half.cutAfter = 500;
    half.stayAfterPieces = true;
    QTest::newRow("in the middle") << half;
}

void tst_LinuxUrlLoaderLimits::silenceTimesOut()
{
    QFETCH(HttpReply, reply);
    m_server.answer("/silent", reply);
    LinuxUrlLoader impatient(200ms);
    const UrlResponse response = loaded(impatient, m_server.url("/silent"));
    QCOMPARE(response.error, QString("The request timed out."));
    QVERIFY(!response.succeeded());
}

void tst_LinuxUrlLoaderLimits::slowAnswerThatKeepsComingArrives()
{
    HttpReply drip = HttpReply::text(QByteArray(60, 'x'));
    drip.pieceSize = 1;
    drip.pieceDelay = 40ms;
    m_server.answer("/drip", drip);
    LinuxUrlLoader patient(2s); // less than the whole takes, more than any one piece
    const UrlResponse response = loaded(patient, m_server.url("/drip"));
    QCOMPARE(response.error, QString());
    QCOMPARE(response.body.size(), 60);
}

void tst_LinuxUrlLoaderLimits::tooLargeAnswersFail_data()
{
    addAnswersAround(5000);
}

void tst_LinuxUrlLoaderLimits::tooLargeAnswersFail()
{
    QFETCH(const HttpReply, reply);
    QFETCH(const bool, fits);
    m_server.answer("/large", reply);
    const UrlRequest request{
        .url = m_server.url("/large"), .method = "GET", .headers = {}, .body = {}, .largestBody = 5000};
    const UrlResponse response = Load(m_loader, request).response();
    QVERIFY(response.body.size() <= 5001);
    QCOMPARE(response.error, fits ? QString() : QString("The answer is too large."));
    QCOMPARE(response.succeeded(), fits);
}

void tst_LinuxUrlLoaderLimits::endlessAnswersFailWithoutTakingMemory_data()
{
    QTest::addColumn<QUrl>("url");
    HttpReply endless = HttpReply::text(QByteArray(200 * 1024 * 1024, 'x'));
    endless.sendLength = false;
    m_server.answer("/endless", endless);
    QTest::newRow("server") << m_server.url("/endless");
    QTest::newRow("large file") << QUrl::fromLocalFile("/proc/kcore");
    QTest::newRow("device") << QUrl::fromLocalFile("/dev/zero");
}

void tst_LinuxUrlLoaderLimits::endlessAnswersFailWithoutTakingMemory()
{
    QFETCH(const QUrl, url);
    const UrlResponse response = loaded(m_loader, url);
    QVERIFY(!response.error.isEmpty());
    QVERIFY(response.body.size() <= 4 * 1024 * 1024 + 1);
}

namespace
{
constexpr qint64 megabyte = 1024 * 1024;

/// Of this process, in bytes: "VmRSS:" now, "VmHWM:" at most since forgetPeak().
qint64 sizeOfProcess(const char *key)
{
    QFile status("/proc/self/status");
    if (!status.open(QIODevice::ReadOnly))
        return -1;
    const QByteArray text = status.readAll();
    return text.mid(text.indexOf(key) + qsizetype(qstrlen(key))).trimmed().split(' ').front().toLongLong() * 1024;
}

bool forgetPeak()
{
    QFile peak("/proc/self/clear_refs");
    return peak.open(QIODevice::WriteOnly) && peak.write("5") == 1;
}

UrlRequest requestUpTo(const QUrl &url, qint64 largestBody)
{
    return {.url = url, .method = "GET", .headers = {}, .body = {}, .largestBody = largestBody};
}
} // namespace

void tst_LinuxUrlLoaderLimits::largeAnswerTakesLittleMoreThanItself_data()
{
    QTest::addColumn<bool>("announced");
    QTest::newRow("announced") << true;
    QTest::newRow("not announced") << false;
}

/// Lists of very many takes are large, and come once.
void tst_LinuxUrlLoaderLimits::largeAnswerTakesLittleMoreThanItself()
{
#ifdef __SANITIZE_ADDRESS__
    QSKIP("Memory is another's business here");
#endif
    QFETCH(const bool, announced);
    loaded(m_loader, m_server.url("/none")); // what is loaded once
    const GeneratingServer server(128 * megabyte, announced);
    if (!forgetPeak())
        QSKIP("The kernel does not forget");
    const qint64 before = sizeOfProcess("VmRSS:");
    const UrlResponse response = Load(m_loader, requestUpTo(server.url(), 128 * megabyte)).response();
    QCOMPARE(response.error, QString());
    QCOMPARE(response.body.size(), 128 * megabyte);
    const qint64 growth = sizeOfProcess("VmHWM:") - before;
    QVERIFY2(growth < 150 * megabyte, qPrintable(QString::number(growth / megabyte) + " MB"));
}

void tst_LinuxUrlLoaderLimits::answerThatNeverEndsIsCutAtTheLimit()
{
    const GeneratingServer server(qint64(1) << 50, false);
    const UrlResponse response = Load(m_loader, requestUpTo(server.url(), 32 * megabyte)).response();
    QCOMPARE(response.error, QString("The answer is too large."));
    QVERIFY(response.body.size() <= 32 * megabyte + 1);
}

QTEST_GUILESS_MAIN(tst_LinuxUrlLoaderLimits)
#include "tst_LinuxUrlLoaderLimits.moc"

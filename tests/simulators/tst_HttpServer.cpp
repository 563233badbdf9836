#include "RawClient.h"

#include <simulators/HttpRange.h>
#include <simulators/HttpServer.h>

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace std::chrono_literals;

namespace
{
bool hasHeader(const QByteArray &answer, const QByteArray &name, const QByteArray &value)
{
    return answer.contains(QByteArray("\r\n" + name + ": " + value + "\r\n"));
}

bool hasBody(const QByteArray &answer, const QByteArray &body)
{
    return answer.endsWith(QByteArray("\r\n\r\n" + body));
}

bool hasStatus(const QByteArray &answer, const QByteArray &status)
{
    return answer.startsWith(QByteArray("HTTP/1.1 " + status + ' '));
}
} // namespace

class tst_HttpServer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QVERIFY(m_server.listen()); }

    void requestsAreKeptAsTheyCame_data();
    void requestsAreKeptAsTheyCame();
    void headTellsWhatGetWouldSend();
    void rangesAreUnderstood_data();
    void rangesAreUnderstood();
    void partsAreAnswered_data();
    void partsAreAnswered();
    void filesAreSentAsTheyWere();
    void bodyIsReadNoFasterThanItIsTaken();
    void largeBodyArrivesWhole();
    void endlessBodyGoesOnUntilTheClientHasEnough();
    void bodyThatEndsEarlyEndsTheConnection();
    void answersAreAsBadAsTold_data();
    void answersAreAsBadAsTold();

private:
    HttpServer m_server;
};

void tst_HttpServer::requestsAreKeptAsTheyCame_data()
{
    QTest::addColumn<QByteArray>("target");
    QTest::addColumn<QString>("path");
    QTest::newRow("plain") << QByteArray("/list.plist") << "/list.plist";
    QTest::newRow("query") << QByteArray("/download?filename=a%20b&format=wav") << "/download";
    QTest::newRow("escaped") << QByteArray("/a%2Fb%C3%A9") << "/a/b\u00e9";
    QTest::newRow("bytes that no URL has") << QByteArray("/a\xff\x01\"<>") << QString();
    QTest::newRow("spaces") << QByteArray("/a b c") << "/a b c";
}

void tst_HttpServer::requestsAreKeptAsTheyCame()
{
    QFETCH(const QByteArray, target);
    QFETCH(const QString, path);
    QByteArray told;
    const auto connection =
        connect(&m_server, &HttpServer::lineReceived, &m_server, [&told](const QByteArray &line) { told = line; });
    exchanged(m_server, get(target));
    disconnect(connection);
    const HttpRequest &request = m_server.requests().back();
    QCOMPARE(request.line, QByteArray("GET " + target + " HTTP/1.1"));
    QCOMPARE(told, request.line);
    QCOMPARE(request.target, target);
    if (!path.isNull())
        QCOMPARE(request.path, path);
}

void tst_HttpServer::headTellsWhatGetWouldSend()
{
    m_server.answer("/digits", digits());
    const QByteArray answer = exchanged(m_server, get("/digits", {}, "HEAD"));
    QVERIFY(hasStatus(answer, "200"));
    QVERIFY(hasHeader(answer, "Content-Length", "10"));
    QVERIFY(hasHeader(answer, "Accept-Ranges", "bytes"));
    QVERIFY(hasHeader(answer, "ETag", "\"one\""));
    QVERIFY(answer.endsWith("\r\n\r\n"));
}

void tst_HttpServer::rangesAreUnderstood_data()
{
    QTest::addColumn<QByteArray>("header");
    QTest::addColumn<bool>("isRange");
    QTest::addColumn<qint64>("first");
    QTest::addColumn<qint64>("end");
    const auto row = [](const char *header, bool isRange, qint64 first = 0, qint64 end = 0) {
        QTest::newRow(header) << QByteArray(header) << isRange << first << end;
    };
    row("bytes=0-", true, 0, 10);
    row("bytes=3-", true, 3, 10);
    row("bytes=3-5", true, 3, 6);
    row("bytes=3-3", true, 3, 4);
    row("bytes=3-99", true, 3, 10);
    row("bytes=-4", true, 6, 10);
    row("bytes=-99", true, 0, 10);
    row("bytes=-0", true, 10, 10);
    row("bytes=10-", true, 10, 10);
    row("bytes=99-100", true, 99, 10);
    row("bytes=9223372036854775807-", true, 9223372036854775807, 10);
    row("bytes=5-3", false);
    row("bytes=9223372036854775808-", false);
    row("bytes=-", false);
    row("bytes=", false);
    row("bytes=a-b", false);
    row("bytes=+1-2", false);
    row("bytes=1-2,4-5", false);
    row("bytes=1-2-3", false);
    row("lines=1-2", false);
    row("", false);
}

void tst_HttpServer::rangesAreUnderstood()
{
    QFETCH(const QByteArray, header);
    QFETCH(const bool, isRange);
    QFETCH(const qint64, first);
    QFETCH(const qint64, end);
    const auto range = HttpRange::requested(header, 10);
    QCOMPARE(range.has_value(), isRange);
    if (range) {
        QCOMPARE(range->first, first);
        QCOMPARE(range->end, end);
        QCOMPARE(range->isEmpty(), first >= end);
    }
}

void tst_HttpServer::partsAreAnswered_data()
{
    QTest::addColumn<QByteArray>("headers");
    QTest::addColumn<QByteArray>("status");
    QTest::addColumn<QByteArray>("contentRange");
    QTest::addColumn<QByteArray>("body");
    const auto row = [](const char *name, const char *headers, const char *status, const char *range,
                        const char *body) {
        QTest::newRow(name) << QByteArray(headers) << QByteArray(status) << QByteArray(range) << QByteArray(body);
    };
    row("the rest", "Range: bytes=4-\r\n", "206", "bytes 4-9/10", "456789");
    row("a middle", "Range: bytes=4-5\r\n", "206", "bytes 4-5/10", "45");
    row("behind the end", "Range: bytes=10-\r\n", "416", "bytes */10", "");
    row("two parts", "Range: bytes=1-2,4-5\r\n", "200", "", "0123456789");
    row("unchanged", "Range: bytes=4-\r\nIf-Range: \"one\"\r\n", "206", "bytes 4-9/10", "456789");
    row("changed", "Range: bytes=4-\r\nIf-Range: \"two\"\r\n", "200", "", "0123456789");
    row("a date, of which nothing is known", "Range: bytes=4-\r\nIf-Range: Sun, 22 Nov 2026 12:00:00 GMT\r\n", "200",
        "", "0123456789");
}

void tst_HttpServer::partsAreAnswered()
{
    QFETCH(const QByteArray, headers);
    QFETCH(const QByteArray, status);
    QFETCH(const QByteArray, contentRange);
    QFETCH(const QByteArray, body);
    m_server.answer("/digits", digits());
    const QByteArray answer = exchanged(m_server, get("/digits", headers));
    QVERIFY(hasStatus(answer, status));
    QVERIFY(hasHeader(answer, "Content-Length", QByteArray::number(body.size())));
    QCOMPARE(answer.contains("Content-Range"), !contentRange.isEmpty());
    QVERIFY(contentRange.isEmpty() || hasHeader(answer, "Content-Range", contentRange));
    QVERIFY(hasBody(answer, body));
}

void tst_HttpServer::filesAreSentAsTheyWere()
{
    QTemporaryDir folder;
    QFile file(folder.filePath("sound.bin"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("0123456789");
    file.close();
    const HttpReply reply = HttpReply::file(file.fileName());
    QVERIFY(file.remove()); // what is being sent may go
    m_server.answer("/file", reply);
    QVERIFY(hasBody(exchanged(m_server, get("/file")), "0123456789"));
    QVERIFY(hasBody(exchanged(m_server, get("/file", "Range: bytes=7-\r\nIf-Range: " + reply.etag + "\r\n")), "789"));
    QCOMPARE(HttpReply::file(file.fileName()).status, 404);
}

void tst_HttpServer::bodyIsReadNoFasterThanItIsTaken()
{
    qint64 furthest = 0;
    constexpr qint64 size = qint64(1) << 40;
    m_server.answer("/large", counted(size, furthest));
    RawClient client(m_server, get("/large"));
    client.socket.setReadBufferSize(1000);
    QTRY_VERIFY(furthest > 0);
    qint64 before = -1;
    QTRY_VERIFY((std::exchange(before, furthest) == furthest)); // the system's own buffers are full
    QVERIFY2(furthest < 64 * 1024 * 1024, qPrintable(QString::number(furthest)));
}

void tst_HttpServer::largeBodyArrivesWhole()
{
    qint64 furthest = 0;
    constexpr qint64 size = 20'000'000;
    m_server.answer("/large", counted(size, furthest));
    RawClient client(m_server, get("/large"));
    QTRY_VERIFY_WITH_TIMEOUT(client.hasEnded(), 60'000);
    const QByteArray body = client.body();
    QCOMPARE(body.size(), size);
    for (qint64 i = 0; i < size; ++i)
        if (body[i] != static_cast<char>(i % 251))
            QFAIL(qPrintable(QString("byte %1").arg(i)));
}

void tst_HttpServer::endlessBodyGoesOnUntilTheClientHasEnough()
{
    qint64 furthest = 0;
    m_server.answer("/endless", counted(HttpBody::unknownSize, furthest));
    RawClient client(m_server, get("/endless"));
    QTRY_VERIFY((client.hasEnded(), client.received.size() > 3'000'000));
    QVERIFY(!client.head().contains("Content-Length"));
    client.socket.abort();
    m_server.answer("/digits", digits());
    QVERIFY(exchanged(m_server, get("/digits")).endsWith("0123456789")); // and the server lives
}

void tst_HttpServer::bodyThatEndsEarlyEndsTheConnection()
{
    HttpReply reply;
    reply.body = HttpBody::generated(10, [](qint64 offset, qint64) { return offset == 0 ? "abc" : QByteArray(); });
    m_server.answer("/early", reply);
    const QByteArray answer = exchanged(m_server, get("/early"));
    QVERIFY(hasHeader(answer, "Content-Length", "10"));
    QVERIFY(hasBody(answer, "abc"));
}

void tst_HttpServer::answersAreAsBadAsTold_data()
{
    QTest::addColumn<HttpReply>("reply");
    QTest::addColumn<QByteArray>("length");
    QTest::addColumn<QByteArray>("body");
    const auto row = [](const char *name, const std::function<void(HttpReply &)> &change, const char *length,
                        const char *body) {
        HttpReply reply = digits();
        change(reply);
        QTest::newRow(name) << reply << QByteArray(length) << QByteArray(body);
    };
    row(
        "good", [](HttpReply &) {}, "10", "0123456789");
    row(
        "cut", [](HttpReply &reply) { reply.cutAfter = 4; }, "10", "0123");
    row(
        "cut behind its end", [](HttpReply &reply) { reply.cutAfter = 40; }, "10", "0123456789");
    row(
        "no length", [](HttpReply &reply) { reply.sendLength = false; }, "", "0123456789");
    row(
        "longer than told", [](HttpReply &reply) { reply.toldLength = 5; }, "5", "0123456789");
    row(
        "shorter than told", [](HttpReply &reply) { reply.toldLength = 50; }, "50", "0123456789");
    row(
        "dripping", [](HttpReply &reply) { reply.pieceSize = 1, reply.pieceDelay = 1ms; }, "10", "0123456789");
    row(
        "late", [](HttpReply &reply) { reply.delay = 10ms; }, "10", "0123456789");
    row(
        "empty", [](HttpReply &reply) { reply.body = QByteArray(); }, "0", "");
}

void tst_HttpServer::answersAreAsBadAsTold()
{
    QFETCH(const HttpReply, reply);
    QFETCH(const QByteArray, length);
    QFETCH(const QByteArray, body);
    m_server.answer("/bad", reply);
    const QByteArray answer = exchanged(m_server, get("/bad"));
    QCOMPARE(answer.contains("Content-Length"), !length.isEmpty());
    QVERIFY(length.isEmpty() || hasHeader(answer, "Content-Length", length));
    QVERIFY(hasBody(answer, body));
}

QTEST_GUILESS_MAIN(tst_HttpServer)
#include "tst_HttpServer.moc"

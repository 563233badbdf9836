#include "Load.h"

#include <simulators/HttpServer.h>

#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>

#include <cstdio>
#include <cstring>

using namespace platform;
using namespace std::chrono_literals;

class tst_LinuxUrlLoader : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QVERIFY(m_server.listen()); }

    void bodyAndStatusArrive();
    void methodHeadersAndBodyAreSent();
    void bodiesOfErrorAnswersArrive_data();
    void bodiesOfErrorAnswersArrive();
    void redirectionsAreFollowed();
    void endlessRedirectionsFail();
    void redirectionToAFileIsRefused();
    void answerWithoutLengthIsWhole();
    void answerCutShortFails_data();
    void answerCutShortFails();
    void garbageFails();
    void nobodyListeningFails();
    void unknownNameFails();
    void filesAreRead();
    void missingFileFails();
    void otherSchemesAreRefused_data();
    void otherSchemesAreRefused();
    void cancelAllEndsRunningAndLaterLoads();
    void loadsRunSideBySide();
    void mainThreadDeliversNoEventsWhileItLoads();

private:
    HttpServer m_server;
    LinuxUrlLoader m_loader;
};

void tst_LinuxUrlLoader::bodyAndStatusArrive()
{
    m_server.answer("/hello", HttpReply::text("Grüße"));
    const UrlResponse response = loaded(m_loader, m_server.url("/hello"));
    QCOMPARE(response.error, QString());
    QCOMPARE(response.status, 200);
    QCOMPARE(response.body, QByteArray("Grüße"));
    QVERIFY(response.succeeded());
}

void tst_LinuxUrlLoader::methodHeadersAndBodyAreSent()
{
    m_server.answer("/post", HttpReply::text("ok"));
    Load load(m_loader, UrlRequest{.url = m_server.url("/post?a=b%20c"),
                                   .method = "POST",
                                   .headers = {{"Content-Type", "text/plain"}, {"X-Kind", "test"}},
                                   .body = "a body"});
    QVERIFY(load.response().succeeded());
    const HttpRequest &request = m_server.requests().back();
    QCOMPARE(request.method, QByteArray("POST"));
    QCOMPARE(request.query.queryItemValue("a", QUrl::FullyDecoded), QString("b c"));
    QCOMPARE(request.headers.value("content-type"), QByteArray("text/plain"));
    QCOMPARE(request.headers.value("x-kind"), QByteArray("test"));
    QCOMPARE(request.body, QByteArray("a body"));
}

void tst_LinuxUrlLoader::bodiesOfErrorAnswersArrive_data()
{
    QTest::addColumn<int>("status");
    for (const int status : {400, 401, 403, 404, 410, 418, 500, 503})
        QTest::addRow("%d", status) << status;
}

void tst_LinuxUrlLoader::bodiesOfErrorAnswersArrive()
{
    QFETCH(int, status);
    HttpReply reply = HttpReply::text("why not");
    reply.status = status;
    m_server.answer("/error", reply);
    const UrlResponse response = loaded(m_loader, m_server.url("/error"));
    QCOMPARE(response.error, QString());
    QCOMPARE(response.status, status);
    QCOMPARE(response.body, QByteArray("why not"));
    QVERIFY(!response.succeeded());
}

void tst_LinuxUrlLoader::redirectionsAreFollowed()
{
    m_server.answer("/from", HttpReply::redirection("/via"));
    m_server.answer("/via", HttpReply::redirection(m_server.url("/to").toEncoded(), 301));
    m_server.answer("/to", HttpReply::text("there"));
    const UrlResponse response = loaded(m_loader, m_server.url("/from"));
    QCOMPARE(response.status, 200);
    QCOMPARE(response.body, QByteArray("there"));
}

void tst_LinuxUrlLoader::endlessRedirectionsFail()
{
    m_server.answer("/round", HttpReply::redirection("/round"));
    const UrlResponse response = loaded(m_loader, m_server.url("/round"));
    QVERIFY(!response.error.isEmpty());
    QVERIFY(!response.succeeded());
}

void tst_LinuxUrlLoader::redirectionToAFileIsRefused()
{
    m_server.answer("/etc", HttpReply::redirection("file:///etc/hostname"));
    const UrlResponse response = loaded(m_loader, m_server.url("/etc"));
    QVERIFY(!response.error.isEmpty());
    QCOMPARE(response.body, QByteArray());
}

void tst_LinuxUrlLoader::answerWithoutLengthIsWhole()
{
    HttpReply reply = HttpReply::text(QByteArray(100'000, 'x'));
    reply.sendLength = false;
    m_server.answer("/open", reply);
    const UrlResponse response = loaded(m_loader, m_server.url("/open"));
    QCOMPARE(response.error, QString());
    QCOMPARE(response.body.size(), 100'000);
}

void tst_LinuxUrlLoader::answerCutShortFails_data()
{
    QTest::addColumn<HttpReply>("reply");
    HttpReply byLength = HttpReply::text(QByteArray(1000, 'x'));
    byLength.cutAfter = 400;
    QTest::newRow("fewer bytes than announced") << byLength;
    byLength.cutAfter = 0;
    QTest::newRow("no byte of those announced") << byLength;
    HttpReply chunked;
    chunked.raw = "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n5\r\nhello\r\n5\r\nwo";
    QTest::newRow("within a chunk") << chunked;
    HttpReply head;
    head.raw = "HTTP/1.1 200 OK\r\nContent-Le";
    QTest::newRow("within the head") << head;
}

void tst_LinuxUrlLoader::answerCutShortFails()
{
    QFETCH(HttpReply, reply);
    m_server.answer("/cut", reply);
    const UrlResponse response = loaded(m_loader, m_server.url("/cut"));
    QVERIFY(!response.error.isEmpty());
    QVERIFY(!response.succeeded());
}

void tst_LinuxUrlLoader::garbageFails()
{
    HttpReply reply;
    reply.raw = QByteArray("\0\xFF\x01garbage\r\n\r\n", 13);
    m_server.answer("/garbage", reply);
    const UrlResponse response = loaded(m_loader, m_server.url("/garbage"));
    QVERIFY(!response.error.isEmpty());
    QVERIFY(!response.succeeded());
}

void tst_LinuxUrlLoader::nobodyListeningFails()
{
    quint16 port = 0;
    {
        HttpServer gone;
        QVERIFY(gone.listen());
        port = static_cast<quint16>(QUrl(gone.address()).port());
    }
    const UrlResponse response = loaded(m_loader, QUrl(QString("http://127.0.0.1:%1/").arg(port)));
    QCOMPARE(response.status, 0);
    QVERIFY(!response.error.isEmpty());
}

/// On a machine without any network, so that the resolver knows no name and no question leaves this one.
void tst_LinuxUrlLoader::unknownNameFails()
{
    if (QProcess::execute("unshare", {"-n", "true"}) != 0)
        QSKIP("There are no namespaces");
    QProcess child;
    child.start("unshare", {"-n", QFileInfo("/proc/self/exe").symLinkTarget(), "--load", "http://support.test/"});
    QVERIFY(child.waitForFinished());
    QCOMPARE(child.readAllStandardOutput(), QByteArray("0 The server “support.test” was not found.\n"));
}

void tst_LinuxUrlLoader::filesAreRead()
{
    QTemporaryDir folder;
    const QString path = folder.filePath("ä b.txt");
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("contents");
    file.close();
    const UrlResponse response = loaded(m_loader, QUrl::fromLocalFile(path));
    QCOMPARE(response.error, QString());
    QCOMPARE(response.status, 200);
    QCOMPARE(response.body, QByteArray("contents"));
}

void tst_LinuxUrlLoader::missingFileFails()
{
    QTemporaryDir folder;
    const UrlResponse response = loaded(m_loader, QUrl::fromLocalFile(folder.filePath("none")));
    QCOMPARE(response.status, 0);
    QVERIFY(!response.error.isEmpty());
}

void tst_LinuxUrlLoader::otherSchemesAreRefused_data()
{
    QTest::addColumn<QUrl>("url");
    QTest::newRow("none") << QUrl("host/path");
    QTest::newRow("empty") << QUrl();
    QTest::newRow("ftp") << QUrl("ftp://127.0.0.1/file");
    QTest::newRow("data") << QUrl("data:text/plain,hello");
    QTest::newRow("invalid") << QUrl("http://[::1");
}

void tst_LinuxUrlLoader::otherSchemesAreRefused()
{
    QFETCH(QUrl, url);
    const UrlResponse response = loaded(m_loader, url);
    QCOMPARE(response.status, 0);
    QCOMPARE(response.error, QString("The address cannot be loaded."));
}

void tst_LinuxUrlLoader::cancelAllEndsRunningAndLaterLoads()
{
    HttpReply never;
    never.neverAnswer = true;
    m_server.answer("/never", never);
    const auto before = m_server.requests().size();
    LinuxUrlLoader loader(1h); // nothing else ends them
    Load first(loader, m_server.url("/never"));
    Load second(loader, m_server.url("/never"));
    QTRY_COMPARE(m_server.requests().size(), before + 2);
    loader.cancelAll();
    const UrlResponse response = first.response();
    QCOMPARE(response.error, QString("The request was cancelled."));
    QVERIFY(!second.response().succeeded());
    QVERIFY(!loaded(loader, m_server.url("/never")).succeeded());
}

void tst_LinuxUrlLoader::loadsRunSideBySide()
{
    HttpReply slow = HttpReply::text("slow");
    slow.neverAnswer = true;
    m_server.answer("/slow", slow);
    m_server.answer("/quick", HttpReply::text("quick"));
    LinuxUrlLoader loader;
    Load waiting(loader, m_server.url("/slow"));
    QCOMPARE(loaded(loader, m_server.url("/quick")).body, QByteArray("quick"));
    QVERIFY(!waiting.isReady());
    loader.cancelAll();
    QVERIFY(!waiting.response().succeeded());
}

void tst_LinuxUrlLoader::mainThreadDeliversNoEventsWhileItLoads()
{
    QTemporaryDir folder;
    bool delivered = false;
    QMetaObject::invokeMethod(
        this, [&] { delivered = true; }, Qt::QueuedConnection);
    const UrlRequest request{
        .url = QUrl::fromLocalFile(folder.path() + "/none"), .method = "GET", .headers = {}, .body = {}};
    QVERIFY(!m_loader.load(request).succeeded());
    QVERIFY(!delivered);
    QTRY_VERIFY(delivered);
}

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    if (argc == 3 && std::strcmp(argv[1], "--load") == 0) {
        const UrlRequest request{.url = QUrl(argv[2]), .method = "GET", .headers = {}, .body = {}};
        const UrlResponse response = LinuxUrlLoader().load(request);
        return std::printf("%d %s\n", response.status, response.error.toUtf8().constData()) < 0;
    }
    tst_LinuxUrlLoader test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_LinuxUrlLoader.moc"

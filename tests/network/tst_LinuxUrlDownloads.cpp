#include "AnswersAroundLimit.h"
#include "DownloadListener.h"

#include <QWPlatform/linux/network/LinuxUrlDownloads.h>
#include <QWPlatform/network/transfers/StrictUrl.h>

#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <sys/resource.h>

using namespace platform;
using namespace std::chrono_literals;

class tst_LinuxUrlDownloads : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QVERIFY(m_server.listen()); }
    void init() { m_folder = std::make_unique<QTemporaryDir>(); }

    void fileArrivesWhole();
    void nothingIsHeardBeforeStartReturns();
    void existingFileIsOverwritten();
    void largeFileIsStreamed();
    void unknownLengthIsMinusOne();
    void compressionIsDeclined();
    void emptyFileArrives();
    void redirectionIsFollowed();
    void errorStatusFails_data();
    void errorStatusFails();
    void cutShortFails_data();
    void cutShortFails();
    void silenceFails();
    void nobodyListeningFails();
    void unwritableDestinationFails_data();
    void unwritableDestinationFails();
    void fullDiskFails();
    void tooLargeFilesFail_data();
    void tooLargeFilesFail();
    void fileAddressesWork();
    void fileThatIsThereStaysUnlessOverwritten();
    void whatAppearsMeanwhileStays();
    void textThatIsNoUrlFailsWithoutARequest();
    void ringOfRedirectionsFails();
    void answerLongerThanToldEndsWhereTold();
    void drippingAnswerArrives();
    void progressIsToldNowAndThen();
    void downloadsRunSideBySide();

private:
    void _start(const QUrl &url) { m_listener->start(m_downloads, url, _destination()); }
    void _run(const QUrl &url);
    QString _destination() const { return m_folder->filePath("Manual.zip"); }
    QStringList _entries() const
    {
        return QDir(m_folder->path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }

    HttpServer m_server;
    LinuxUrlDownloads m_downloads;
    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<DownloadListener> m_listener;
};

void tst_LinuxUrlDownloads::_run(const QUrl &url)
{
    m_listener = std::make_unique<DownloadListener>();
    _start(url);
    QTRY_VERIFY_WITH_TIMEOUT(m_listener->ended(), 20'000);
}

void tst_LinuxUrlDownloads::fileArrivesWhole()
{
    m_server.answer("/file", HttpReply::text("0123456789"));
    _run(m_server.url("/file"));
    QCOMPARE(m_listener->calls, QStringList({"response", "data", "finish"}));
    QCOMPARE(m_listener->expected, 10);
    QCOMPARE(m_listener->received, 10);
    QCOMPARE(contentsOf(_destination()), QByteArray("0123456789"));
    QCOMPARE(_entries(), QStringList{"Manual.zip"});
}

void tst_LinuxUrlDownloads::nothingIsHeardBeforeStartReturns()
{
    for (const QUrl &url : {QUrl("nonsense"), QUrl("file:///none/such"), m_server.url("/file")}) {
        m_listener = std::make_unique<DownloadListener>();
        _start(url);
        QCOMPARE(m_listener->calls, QStringList());
        QTRY_VERIFY(m_listener->ended());
    }
}

void tst_LinuxUrlDownloads::existingFileIsOverwritten()
{
    QFile old(_destination());
    QVERIFY(old.open(QIODevice::WriteOnly));
    old.write("an older and longer file");
    old.close();
    m_server.answer("/file", HttpReply::text("new"));
    _run(m_server.url("/file"));
    QCOMPARE(contentsOf(_destination()), QByteArray("new"));
}

void tst_LinuxUrlDownloads::largeFileIsStreamed()
{
    QByteArray body(20 * 1024 * 1024, Qt::Uninitialized);
    for (qsizetype i = 0; i < body.size(); ++i)
        body[i] = static_cast<char>(i * 31 + i / 997);
    m_server.answer("/large", HttpReply::text(body));
    _run(m_server.url("/large"));
    QCOMPARE(m_listener->calls, QStringList({"response", "data", "finish"}));
    QCOMPARE(m_listener->received, body.size());
    QVERIFY(contentsOf(_destination()) == body);
}

void tst_LinuxUrlDownloads::unknownLengthIsMinusOne()
{
    HttpReply reply = HttpReply::text("of some length");
    reply.sendLength = false;
    m_server.answer("/open", reply);
    _run(m_server.url("/open"));
    QCOMPARE(m_listener->expected, -1);
    QCOMPARE(m_listener->calls.back(), QString("finish"));
    QCOMPARE(contentsOf(_destination()), QByteArray("of some length"));
}

void tst_LinuxUrlDownloads::compressionIsDeclined()
{
    m_server.answer("/file", HttpReply::text("plain"));
    _run(m_server.url("/file"));
    QCOMPARE(m_server.requests().back().headers.value("accept-encoding"), QByteArray("identity"));
}

void tst_LinuxUrlDownloads::emptyFileArrives()
{
    m_server.answer("/empty", HttpReply::text({}));
    _run(m_server.url("/empty"));
    QCOMPARE(m_listener->calls, QStringList({"response", "finish"}));
    QCOMPARE(contentsOf(_destination()), QByteArray());
}

void tst_LinuxUrlDownloads::redirectionIsFollowed()
{
    m_server.answer("/from", HttpReply::redirection("/file"));
    m_server.answer("/file", HttpReply::text("there"));
    _run(m_server.url("/from"));
    QCOMPARE(m_listener->calls, QStringList({"response", "data", "finish"}));
    QCOMPARE(m_listener->expected, 5);
}

void tst_LinuxUrlDownloads::errorStatusFails_data()
{
    QTest::addColumn<int>("status");
    for (const int status : {300, 304, 400, 401, 403, 404, 500, 503})
        QTest::addRow("%d", status) << status;
}

void tst_LinuxUrlDownloads::errorStatusFails()
{
    QFETCH(int, status);
    m_server.answer("/error", HttpReply::failure(status));
    _run(m_server.url("/error"));
    QCOMPARE(m_listener->calls, QStringList{"fail"});
    QCOMPARE(m_listener->failure, QString("The server answered with status %1.").arg(status));
    QCOMPARE(_entries(), QStringList());
}

void tst_LinuxUrlDownloads::cutShortFails_data()
{
    QTest::addColumn<QByteArray>("raw");
    QTest::newRow("fewer bytes than announced") << QByteArray("HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\n12345");
    QTest::newRow("no byte of those announced") << QByteArray("HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\n");
    QTest::newRow("within a chunk") << QByteArray("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n5\r\n12");
    QTest::newRow("within the head") << QByteArray("HTTP/1.1 200 OK\r\nContent-Le");
    QTest::newRow("garbage") << QByteArray("\x01\x02garbage");
}

void tst_LinuxUrlDownloads::cutShortFails()
{
    QFETCH(QByteArray, raw);
    HttpReply reply;
    reply.raw = raw;
    m_server.answer("/cut", reply);
    _run(m_server.url("/cut"));
    QCOMPARE(m_listener->calls.back(), QString("fail"));
    QVERIFY(!m_listener->failure.isEmpty());
    QCOMPARE(_entries(), QStringList());
}

void tst_LinuxUrlDownloads::silenceFails()
{
    HttpReply reply = HttpReply::text("0123456789");
    reply.cutAfter = 4;
    reply.stayAfterPieces = true;
    m_server.answer("/silent", reply);
    LinuxUrlDownloads impatient({.inactivity = 200ms});
    m_listener = std::make_unique<DownloadListener>();
    m_listener->start(impatient, m_server.url("/silent"), _destination());
    QTRY_VERIFY(m_listener->ended());
    QCOMPARE(m_listener->calls, QStringList({"response", "data", "fail"}));
    QCOMPARE(m_listener->failure, QString("The request timed out."));
    QCOMPARE(_entries(), QStringList());
}

void tst_LinuxUrlDownloads::nobodyListeningFails()
{
    QUrl url;
    {
        HttpServer gone;
        QVERIFY(gone.listen());
        url = gone.url("/file");
    }
    _run(url);
    QCOMPARE(m_listener->calls, QStringList{"fail"});
    QVERIFY(!m_listener->failure.isEmpty());
    QCOMPARE(_entries(), QStringList());
}

void tst_LinuxUrlDownloads::unwritableDestinationFails_data()
{
    QTest::addColumn<QString>("destination");
    QTest::addColumn<QString>("failure");
    QTest::newRow("a folder") << "folder"
                              << "A folder has the name of the file.";
    QTest::newRow("below a file") << "file/Manual.zip"
                                  << "The folder “%1/file” is no longer there.";
    QTest::newRow("below no folder") << "none/Manual.zip"
                                     << "The folder “%1/none” is no longer there.";
    QTest::newRow("no name") << ""
                             << "The disk does not allow the name of the file.";
}

void tst_LinuxUrlDownloads::unwritableDestinationFails()
{
    QFETCH(QString, destination);
    QFETCH(QString, failure);
    QVERIFY(QDir(m_folder->path()).mkdir("folder"));
    QVERIFY(QFile(m_folder->filePath("file")).open(QIODevice::WriteOnly));
    m_listener = std::make_unique<DownloadListener>();
    m_listener->start(m_downloads, m_server.url("/file"), m_folder->path() + '/' + destination);
    QTRY_VERIFY(m_listener->ended());
    QCOMPARE(m_listener->calls, QStringList{"fail"});
    QCOMPARE(m_listener->failure, failure.contains("%1") ? failure.arg(m_folder->path()) : failure);
    QCOMPARE(_entries(), QStringList({"file", "folder"}));
}

void tst_LinuxUrlDownloads::fullDiskFails()
{
    // A limit on file sizes makes writing fail half-way, as a full disk does.
    rlimit before{};
    QCOMPARE(::getrlimit(RLIMIT_FSIZE, &before), 0);
    const rlimit small{.rlim_cur = 65536, .rlim_max = before.rlim_max};
    auto *handler = ::signal(SIGXFSZ, SIG_IGN);
    QCOMPARE(::setrlimit(RLIMIT_FSIZE, &small), 0);
    m_server.answer("/large", HttpReply::text(QByteArray(1'000'000, 'x')));
    _run(m_server.url("/large"));
    QCOMPARE(::setrlimit(RLIMIT_FSIZE, &before), 0);
    ::signal(SIGXFSZ, handler);

    QCOMPARE(m_listener->calls.back(), QString("fail"));
    QCOMPARE(m_listener->failure, QString("The file is too large for its disk."));
    QCOMPARE(_entries(), QStringList());
}

void tst_LinuxUrlDownloads::tooLargeFilesFail_data()
{
    addAnswersAround(5000);
}

void tst_LinuxUrlDownloads::tooLargeFilesFail()
{
    QFETCH(const HttpReply, reply);
    QFETCH(const bool, fits);
    m_server.answer("/large", reply);
    LinuxUrlDownloads modest({.fileSize = 5000});
    m_listener = std::make_unique<DownloadListener>();
    m_listener->start(modest, m_server.url("/large"), _destination());
    QTRY_VERIFY(m_listener->ended());
    QCOMPARE(m_listener->failure, fits ? QString() : QString("The file is too large."));
    QCOMPARE(_entries(), fits ? QStringList("Manual.zip") : QStringList());
}

void tst_LinuxUrlDownloads::fileAddressesWork()
{
    QFile source(m_folder->filePath("source"));
    QVERIFY(source.open(QIODevice::WriteOnly));
    source.write("local");
    source.close();
    _run(QUrl::fromLocalFile(source.fileName()));
    QCOMPARE(m_listener->calls, QStringList({"response", "data", "finish"}));
    QCOMPARE(m_listener->expected, 5);
    QCOMPARE(contentsOf(_destination()), QByteArray("local"));
}

void tst_LinuxUrlDownloads::fileThatIsThereStaysUnlessOverwritten()
{
    QVERIFY(QFile(_destination()).open(QIODevice::WriteOnly));
    m_server.answer("/file", HttpReply::text("new"));
    m_listener = std::make_unique<DownloadListener>();
    m_listener->start(m_downloads, m_server.url("/file"), _destination(), false);
    QTRY_VERIFY(m_listener->ended());
    QCOMPARE(m_listener->calls, QStringList({"response", "data", "destination", "finish"}));
    QCOMPARE(m_listener->path, m_folder->filePath("Manual 2.zip"));
    QCOMPARE(contentsOf(m_listener->path), "new");
    QCOMPARE(contentsOf(_destination()), "");
}

void tst_LinuxUrlDownloads::whatAppearsMeanwhileStays()
{
    m_server.answer("/file", HttpReply::text("new"));
    m_listener = std::make_unique<DownloadListener>();
    m_listener->whenHeard = [this](const QString &call) {
        if (call == u"data")
            QVERIFY(QFile(_destination()).open(QIODevice::WriteOnly));
    };
    m_listener->start(m_downloads, m_server.url("/file"), _destination(), false);
    QTRY_VERIFY(m_listener->ended());
    QCOMPARE(m_listener->path, m_folder->filePath("Manual 2.zip"));
    QCOMPARE(contentsOf(_destination()), "");
}

void tst_LinuxUrlDownloads::textThatIsNoUrlFailsWithoutARequest()
{
    const int before = m_server.connections();
    _run(urlAsItStands(m_server.address() + "/take é"));
    QCOMPARE(m_listener->calls, QStringList("fail"));
    QCOMPARE(m_listener->failure, "The address cannot be loaded.");
    QCOMPARE(m_server.connections(), before);
    QCOMPARE(_entries(), QStringList());
}

void tst_LinuxUrlDownloads::ringOfRedirectionsFails()
{
    m_server.answer("/one", HttpReply::redirection("/other"));
    m_server.answer("/other", HttpReply::redirection("/one"));
    _run(m_server.url("/one"));
    QCOMPARE(m_listener->calls, QStringList("fail"));
    QCOMPARE(m_listener->failure, "The address leads to another one again and again.");
}

void tst_LinuxUrlDownloads::answerLongerThanToldEndsWhereTold()
{
    HttpReply reply;
    reply.raw = "HTTP/1.1 200 OK\r\nContent-Length: 5\r\n\r\n1234567890";
    m_server.answer("/longer", reply);
    _run(m_server.url("/longer"));
    QCOMPARE(m_listener->calls, QStringList({"response", "data", "finish"}));
    QCOMPARE(contentsOf(_destination()), "12345");
}

void tst_LinuxUrlDownloads::drippingAnswerArrives()
{
    HttpReply drip = HttpReply::text(QByteArray(60, 'x'));
    drip.pieceSize = 1;
    drip.pieceDelay = 10ms;
    m_server.answer("/drip", drip);
    LinuxUrlDownloads patient({.inactivity = 5s});
    m_listener = std::make_unique<DownloadListener>();
    m_listener->start(patient, m_server.url("/drip"), _destination());
    QTRY_VERIFY_WITH_TIMEOUT(m_listener->ended(), 20'000);
    QCOMPARE(m_listener->received, 60);
    QCOMPARE(m_listener->calls.back(), "finish");
}

/// However fast it is, so that the event loop is for the user.
void tst_LinuxUrlDownloads::progressIsToldNowAndThen()
{
    m_server.answer("/large", HttpReply::text(QByteArray(64 * 1024 * 1024, 'x')));
    QElapsedTimer clock;
    clock.start();
    _run(m_server.url("/large"));
    QCOMPARE(m_listener->calls.back(), "finish");
    QVERIFY(m_listener->pieces <= clock.elapsed() / 40 + 2); // the first at once, the last without waiting
}

void tst_LinuxUrlDownloads::downloadsRunSideBySide()
{
    std::vector<std::unique_ptr<DownloadListener>> listeners;
    for (int i = 0; i < 8; ++i) {
        m_server.answer(QString("/%1").arg(i), HttpReply::text(QByteArray(500'000, char('a' + i))));
        listeners.push_back(std::make_unique<DownloadListener>());
        listeners.back()->start(m_downloads, m_server.url(QString("/%1").arg(i)), _destination(), false);
    }
    for (const auto &listener : listeners)
        QTRY_VERIFY(listener->ended());
    for (int i = 0; i < 8; ++i) {
        const QString &path = listeners[size_t(i)]->path;
        QVERIFY(contentsOf(path.isEmpty() ? _destination() : path) == QByteArray(500'000, char('a' + i)));
    }
    QCOMPARE(_entries().size(), 8);
}

QTEST_GUILESS_MAIN(tst_LinuxUrlDownloads)
#include "tst_LinuxUrlDownloads.moc"

#include "DownloadListener.h"

#include <QWPlatform/linux/network/LinuxUrlDownloads.h>

#include <simulators/HttpServer.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <cstdio>
#include <cstring>
#include <unistd.h>

using namespace platform;

/// Downloads that somebody ends: who started them, the host, whoever kills it, or a disk.
class tst_DownloadEnds : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QVERIFY(m_server.listen()); }
    void init() { m_folder = std::make_unique<QTemporaryDir>(); }

    void cancelIsSilentAndLeavesNothing();
    void observerMayDropTheDownload_data();
    void observerMayDropTheDownload();
    void endOfWorkEndsDownloads();
    void stoppedAtAnyMomentItLeavesNothing();
    void killedHostLeavesNothing();
    void diskThatTakesNoFileIsNamed_data();
    void diskThatTakesNoFileIsNamed();
    void folderThatGoesMeanwhileIsTold();

private:
    void _start(const QUrl &url) { m_listener->start(m_downloads, url, _destination()); }
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

void tst_DownloadEnds::cancelIsSilentAndLeavesNothing()
{
    HttpReply reply = HttpReply::text("0123456789");
    reply.cutAfter = 4;
    reply.stayAfterPieces = true;
    m_server.answer("/half", reply);
    m_listener = std::make_unique<DownloadListener>();
    _start(m_server.url("/half"));
    QTRY_COMPARE(m_listener->received, 4);
    m_listener->download->cancel();
    m_listener->download->cancel(); // once more does nothing
    QCOMPARE(_entries(), QStringList());
    m_server.answer("/file", HttpReply::text("other"));
    DownloadListener other;
    other.start(m_downloads, m_server.url("/file"), m_folder->filePath("other"));
    QTRY_VERIFY(other.ended()); // the loop has run for a whole download
    QCOMPARE(m_listener->calls, QStringList({"response", "data"}));
}

void tst_DownloadEnds::observerMayDropTheDownload_data()
{
    QTest::addColumn<QString>("call");
    QTest::addColumn<QString>("path");
    QTest::newRow("response") << "response"
                              << "/file";
    QTest::newRow("data") << "data"
                          << "/file";
    QTest::newRow("finish") << "finish"
                            << "/file";
    QTest::newRow("fail") << "fail"
                          << "/error";
}

void tst_DownloadEnds::observerMayDropTheDownload()
{
    QFETCH(QString, call);
    QFETCH(QString, path);
    m_server.answer("/file", HttpReply::text("0123456789"));
    m_server.answer("/error", HttpReply::failure(500));
    m_listener = std::make_unique<DownloadListener>();
    m_listener->dropAt = call;
    _start(m_server.url(path));
    QTRY_VERIFY(!m_listener->download);
    DownloadListener other;
    other.start(m_downloads, m_server.url("/file"), m_folder->filePath("other"));
    QTRY_VERIFY(other.ended());
    QCOMPARE(m_listener->calls.back(), call); // nothing after it
    QCOMPARE(QFile::exists(_destination()), call == u"finish");
}

void tst_DownloadEnds::endOfWorkEndsDownloads()
{
    HttpReply reply = HttpReply::text(QByteArray(1'000'000, 'x'));
    reply.cutAfter = 500'000;
    reply.stayAfterPieces = true;
    m_server.answer("/half", reply);
    LinuxUrlDownloads downloads;
    m_listener = std::make_unique<DownloadListener>();
    m_listener->start(downloads, m_server.url("/half"), _destination());
    QTRY_COMPARE(m_listener->received, 500'000);
    downloads.cancelAll();
    QCOMPARE(_entries(), QStringList());
    DownloadListener late;
    late.start(downloads, m_server.url("/half"), _destination());
    QTRY_VERIFY(late.ended());
    QCOMPARE(late.calls, QStringList("fail"));
    QCOMPARE(m_listener->calls, QStringList({"response", "data"}));
}

/// After each number of turns of the event loop, from none to those of a whole download and its end.
void tst_DownloadEnds::stoppedAtAnyMomentItLeavesNothing()
{
    m_server.answer("/file", HttpReply::text(QByteArray(2'000'000, 'x')));
    LinuxUrlDownloads downloads;
    const QByteArray body(2'000'000, 'x');
    for (int turns = 0; turns < 150; ++turns) {
        DownloadListener listener;
        listener.start(downloads, m_server.url("/file"), _destination());
        for (int turn = 0; turn < turns && !listener.ended(); ++turn)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        listener.download.reset();
        // Once all was heard the file may be getting its name, and then is whole.
        QVERIFY(!QFile::exists(_destination()) || listener.received == body.size());
        QVERIFY(!listener.ended() || contentsOf(_destination()) == body);
        QFile::remove(_destination());
    }
    downloads.cancelAll(); // waits for the threads
    QVERIFY(!QFile::exists(_destination()) || contentsOf(_destination()) == body);
}

void tst_DownloadEnds::killedHostLeavesNothing()
{
    HttpReply reply = HttpReply::text(QByteArray(1'000'000, 'x'));
    reply.cutAfter = 500'000;
    reply.stayAfterPieces = true;
    m_server.answer("/half", reply);
    QProcess host;
    host.start(QFileInfo("/proc/self/exe").symLinkTarget(),
               {"--download", m_server.url("/half").toString(), _destination()});
    QTRY_VERIFY_WITH_TIMEOUT(host.canReadLine() || host.state() == QProcess::NotRunning, 20'000);
    QCOMPARE(host.readAll(), "half\n");
    host.kill();
    QVERIFY(host.waitForFinished());
    QVERIFY(!QFile::exists(_destination()));
}

void tst_DownloadEnds::diskThatTakesNoFileIsNamed_data()
{
    QTest::addColumn<QString>("options"); ///< Of a disk in memory.
    QTest::addColumn<QByteArray>("failure");
    QTest::newRow("full") << "size=256k" << QByteArray("The disk is full.\n");
    QTest::newRow("read only") << "ro" << QByteArray("The disk cannot be written to.\n");
}

void tst_DownloadEnds::diskThatTakesNoFileIsNamed()
{
    if (::geteuid() != 0 || QProcess::execute("unshare", {"-m", "mount", "-t", "tmpfs", "none", "/mnt"}) != 0)
        QSKIP("Nothing may be mounted");
    QFETCH(const QString, options);
    QFETCH(const QByteArray, failure);
    m_server.answer("/large", HttpReply::text(QByteArray(1'000'000, 'x')));
    QProcess host;
    host.start("unshare",
               {"-m", "sh", "-c", "mount -t tmpfs -o $1 none \"$2\" && exec \"$3\" --download $4 \"$2/file\"", "sh",
                options, m_folder->path(), QFileInfo("/proc/self/exe").symLinkTarget(),
                m_server.url("/large").toString()});
    QTRY_VERIFY_WITH_TIMEOUT(host.state() == QProcess::NotRunning, 20'000);
    QCOMPARE(host.readAll(), failure);
}

void tst_DownloadEnds::folderThatGoesMeanwhileIsTold()
{
    m_server.answer("/file", HttpReply::text("new"));
    m_listener = std::make_unique<DownloadListener>();
    m_listener->whenHeard = [this](const QString &call) {
        if (call == u"data")
            QVERIFY(m_folder->remove());
    };
    _start(m_server.url("/file"));
    QTRY_VERIFY(m_listener->ended());
    QCOMPARE(m_listener->failure, QString("The folder “%1” is no longer there.").arg(m_folder->path()));
    QVERIFY(!QFile::exists(m_folder->path()));
}

namespace
{
/// A host that says when half of its download has come, and ends only where it fails, saying why.
int download(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    LinuxUrlDownloads downloads;
    DownloadListener listener;
    listener.whenHeard = [&](const QString &call) {
        if (call == u"fail")
            QCoreApplication::quit();
        else if (listener.received != 500'000)
            return;
        std::puts(call == u"fail" ? qPrintable(listener.failure) : "half");
        std::fflush(stdout);
    };
    listener.start(downloads, QUrl(argv[2]), argv[3], false);
    return QCoreApplication::exec();
}
} // namespace

int main(int argc, char **argv)
{
    if (argc == 4 && std::strcmp(argv[1], "--download") == 0)
        return download(argc, argv);
    QCoreApplication application(argc, argv);
    tst_DownloadEnds test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_DownloadEnds.moc"

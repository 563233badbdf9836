#include <QWPlatform/foundation/PropertyList.h>
#include <QWPlatform/linux/network/LinuxUrlLoader.h>
#include <simulators/SupportSite.h>

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <future>

using namespace platform;

namespace
{
UrlResponse loaded(const QUrl &url)
{
    static LinuxUrlLoader loader;
    auto future = std::async(std::launch::async,
                             [url] { return loader.load({.url = url, .method = "GET", .headers = {}, .body = {}}); });
    const auto isReady = [&] { return future.wait_for(std::chrono::seconds(0)) == std::future_status::ready; };
    if (!QTest::qWaitFor(isReady, 20'000))
        qFatal("The site does not answer");
    return future.get();
}

QString manualVersionOf(const UrlResponse &response)
{
    return PropertyList::fromData(response.body).value_or(QVariant()).toMap().value("version").toString();
}

void write(const QString &path, const QByteArray &data)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(data) != data.size())
        qFatal("Cannot write %s", qPrintable(path));
}
} // namespace

class tst_SupportSite : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tellsTheManualVersion();
    void wantsCodeAndMajorVersion();
    void servesTheManualFromTheFolder();
    void givesNothingFromOutsideTheFolder_data();
    void givesNothingFromOutsideTheFolder();
    void pathsCanBeScripted();
    void programServesAndEndsOnRequest();
    void programEndsWithItsParent();
};

void tst_SupportSite::tellsTheManualVersion()
{
    SupportSite site;
    QVERIFY(site.listen());
    const QUrl question = site.url("/support/manual_version.php?appCode=TH&version=2");
    QCOMPARE(loaded(question).status, 404);
    site.setManualVersion("2.1.3");
    QCOMPARE(manualVersionOf(loaded(question)), QString("2.1.3"));
}

void tst_SupportSite::wantsCodeAndMajorVersion()
{
    SupportSite site;
    site.setManualVersion("2.1");
    QVERIFY(site.listen());
    QCOMPARE(loaded(site.url("/support/manual_version.php?appCode=TH")).status, 400);
    QCOMPARE(loaded(site.url("/support/manual_version.php?version=2")).status, 400);
}

void tst_SupportSite::servesTheManualFromTheFolder()
{
    QTemporaryDir folder;
    write(folder.filePath("support/manuals/th/2/Manual.zip"), "zip");
    SupportSite site(folder.path());
    QVERIFY(site.listen());
    QCOMPARE(loaded(site.url("/support/manuals/th/2/Manual.zip")).body, QByteArray("zip"));
    QCOMPARE(loaded(site.url("/support/manuals/th/3/Manual.zip")).status, 404);
    site.setManualArchive("for all");
    QCOMPARE(loaded(site.url("/support/manuals/th/3/Manual.zip")).body, QByteArray("for all"));
}

void tst_SupportSite::givesNothingFromOutsideTheFolder_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("folder") << "/";
    QTest::newRow("dots") << "/%2e%2e/secret";
    QTest::newRow("sibling with the same start") << "/%2e%2e/site2/secret";
    QTest::newRow("link") << "/link";
}

void tst_SupportSite::givesNothingFromOutsideTheFolder()
{
    QFETCH(QString, path);
    QTemporaryDir folder;
    write(folder.filePath("secret"), "secret");
    write(folder.filePath("site2/secret"), "secret");
    write(folder.filePath("site/file"), "open");
    QVERIFY(QFile::link(folder.filePath("secret"), folder.filePath("site/link")));
    SupportSite site(folder.filePath("site"));
    QVERIFY(site.listen());
    QCOMPARE(loaded(site.url("/file")).body, QByteArray("open"));
    QCOMPARE(loaded(site.url(path)).status, 404);
}

void tst_SupportSite::pathsCanBeScripted()
{
    SupportSite site;
    QVERIFY(site.listen());
    site.setManualVersion("2.1");
    site.answer("/support/manual_version.php", HttpReply::failure(503));
    QCOMPARE(loaded(site.url("/support/manual_version.php?appCode=TH&version=2")).status, 503);
}

void tst_SupportSite::programServesAndEndsOnRequest()
{
    QProcess program;
    program.start(QW_SUPPORT_SITE, {"--manual-version", "3.4"});
    QVERIFY(program.waitForReadyRead());
    const QString address = QString::fromUtf8(program.readLine()).trimmed();
    QCOMPARE(manualVersionOf(loaded(QUrl(address + "/support/manual_version.php?appCode=A&version=1"))),
             QString("3.4"));
    program.terminate();
    QVERIFY(program.waitForFinished());
}

void tst_SupportSite::programEndsWithItsParent()
{
    QProcess shell;
    shell.start("/bin/sh", {"-c", QString("'%1' & echo $!; read line").arg(QW_SUPPORT_SITE)});
    QVERIFY(shell.waitForStarted());
    QByteArray output;
    QTRY_VERIFY((output += shell.readAll(), output.count('\n') == 2)); // its id and its address
    const QList<QByteArray> lines = output.split('\n');
    const pid_t server = (lines[0].startsWith("http") ? lines[1] : lines[0]).toInt();
    QVERIFY(server > 1);
    shell.kill();
    QVERIFY(shell.waitForFinished());
    const auto hasEnded = [server] {
        QFile stat(QString("/proc/%1/stat").arg(server));
        return !stat.open(QIODevice::ReadOnly) ||
               stat.readAll().contains(") Z "); // none waits for orphans in containers
    };
    QTRY_VERIFY(hasEnded());
}

QTEST_GUILESS_MAIN(tst_SupportSite)
#include "tst_SupportSite.moc"

// The manual on the real machine: the real unzip, a real server on the loopback interface, the real browser view. This
// program lies in an application bundle of its own, whose archive each test writes before it opens the manual.
#include "fakes/QWTestMain.h"
#include "plugins/OrdinaryUser.h"

#include <QWPlatform/System.h>
#include <QWPlatform/appkit/AlertResponder.h>
#include <QWPlatform/appkit/Panel.h>
#include <QWPlatform/appkit/WebView.h>
#include <QWPlatform/foundation/BackgroundWork.h>
#include <QWPlatform/foundation/Bundle.h>
#include <QWPlatform/foundation/Locations.h>
#include <QWPlatform/network/UrlDownload.h>
#include <QWPlatform/network/UrlLoader.h>
#include <QWUtilities/shell/QWManual.h>

#include <simulators/SupportSite.h>

#include <QDir>
#include <QFile>
#include <QLabel>
#include <QProcess>
#include <QProgressBar>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>

using namespace std::chrono_literals;
using platform::System;

namespace
{
QByteArray pageWithVersion(const QByteArray &version)
{
    return "<html><head><meta charset=\"utf-8\"><meta name=\"qw_manual_version\" content=\"" + version +
           "\"><title>Manual</title></head><body><h1>Manual " + version + "</h1></body></html>";
}

QByteArray contentsOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(missing)");
}

void writeTo(const QString &path, const QByteArray &data)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(data), data.size());
}

/// An archive with these entries, in order, made by a few lines of Python, which lets names and links be anything.
QByteArray archiveOf(const QByteArray &script)
{
    const QTemporaryDir folder;
    const QString path = folder.path() + "/Manual.zip";
    QProcess python;
    python.start("python3", {"-c",
                             QString::fromUtf8("import sys,zipfile\n"
                                               "z=zipfile.ZipFile(sys.argv[1],'w')\n"
                                               "def link(name,to):\n"
                                               "  i=zipfile.ZipInfo(name); i.create_system=3\n"
                                               "  i.external_attr=0o120777<<16; z.writestr(i,to)\n" +
                                               script + "\nz.close()\n"),
                             path});
    if (!python.waitForFinished() || python.exitCode() != 0)
        qFatal("%s", python.readAllStandardError().constData());
    return contentsOf(path);
}

/// The archive with its entries marked as encrypted.
QByteArray encrypted(QByteArray archive)
{
    for (const auto &[signature, flags] : {std::pair("PK\x03\x04", 6), std::pair("PK\x01\x02", 8)})
        for (auto at = archive.indexOf(signature); at >= 0; at = archive.indexOf(signature, at + 1))
            archive[at + flags] = static_cast<char>(archive[at + flags] | 1);
    return archive;
}

QByteArray goodArchive(const QByteArray &version)
{
    return archiveOf("z.writestr('index.html','''" + pageWithVersion(version) + "''')\nz.writestr('more/b.html','b')");
}
} // namespace

class tst_QWManualReal : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void hostsArchiveIsUnpackedAndShown();
    void brokenArchiveDoesNoHarm_data();
    void brokenArchiveDoesNoHarm();
    void archiveCannotLeaveItsFolder_data();
    void archiveCannotLeaveItsFolder();
    void updateIsDownloadedAndInstalled();
    void badSiteChangesNothing_data();
    void badSiteChangesNothing();
    void siteThatIsDownIsSilent();
    void failedDownloadKeepsTheManual_data();
    void failedDownloadKeepsTheManual();
    void downloadWithoutLengthIsInstalled();
    void slowDownloadCanBeStopped();
    void foldersWithoutPermissionsAreReplaced();
    void brokenUpdateLeavesAWorkingWindow();
    void pdfHoldsThePage();
    void escapeInThePageClosesTheWindow();

private:
    void hostCarries(const QByteArray &archive) const;
    void openAndWaitForCheck();
    static QString supportFolder() { return QWApplication::sharedApplication()->supportDirectory(); }
    static QString index() { return supportFolder() + "/Manual/index.html"; }
    template <class T>
    static T *child(const char *name)
    {
        return QWManual::manual().window()->findChild<T *>(name);
    }
    static bool isIdle() { return !child<QWidget>("progressBar")->isVisible(); }
    void offerUpdate(const HttpReply &reply);

    std::unique_ptr<SupportSite> m_site;
    QStringList m_alerts;
    QString m_archive; ///< The host's own.
};

void tst_QWManualReal::init()
{
    m_alerts.clear();
    platform::setAlertResponder([this](const platform::Alert &alert, QWidget *) {
        m_alerts.append(alert.messageText);
        return std::optional(0);
    });
    m_site = std::make_unique<SupportSite>();
    QVERIFY(m_site->listen());
    System::current().locations().setSupportSite(m_site->address());
    m_archive = System::current().mainBundle().path() + "/Contents/Resources/Manual.zip";
    QDir(supportFolder()).removeRecursively();
    QFile::remove(m_archive);
    QFile::remove(QWApplication::sharedApplication()->tempDirectory() + "/Manual.zip");
}

void tst_QWManualReal::cleanup()
{
    QTRY_COMPARE(System::current().backgroundWork().running(), 0);
    System::current().releaseShared();
    m_site.reset();
}

void tst_QWManualReal::hostCarries(const QByteArray &archive) const
{
    writeTo(m_archive, archive);
}

void tst_QWManualReal::openAndWaitForCheck()
{
    QWManual::openManual();
    QTRY_COMPARE(System::current().backgroundWork().running(), 0);
}

void tst_QWManualReal::hostsArchiveIsUnpackedAndShown()
{
    hostCarries(goodArchive("2.1"));
    QWManual::openManual();
    QCOMPARE(contentsOf(index()), pageWithVersion("2.1"));
    QCOMPARE(contentsOf(supportFolder() + "/Manual/more/b.html"), "b");
    QSignalSpy loaded(QWManual::manual().contentView(), &platform::WebView::loadFinished);
    QVERIFY(loaded.wait(20'000));
    QVERIFY(loaded.last().first().toBool());
    QVERIFY(m_alerts.isEmpty());
}

void tst_QWManualReal::brokenArchiveDoesNoHarm_data()
{
    QTest::addColumn<QByteArray>("archive");
    const QByteArray good = goodArchive("2.1");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("garbage") << QByteArray("not an archive at all");
    QTest::newRow("cut short") << good.left(good.size() / 2);
    QTest::newRow("without its beginning") << good.mid(good.size() / 2);
    QByteArray damaged = good;
    damaged.replace(40, 40, QByteArray(40, '\xff'));
    QTest::newRow("damaged in the middle") << damaged;
    QTest::newRow("asking for a password") << encrypted(good);
    QTest::newRow("without an index page") << archiveOf("z.writestr('other.html','b')");
}

void tst_QWManualReal::brokenArchiveDoesNoHarm()
{
    QFETCH(const QByteArray, archive);
    hostCarries(archive);
    openAndWaitForCheck();
    QVERIFY(QWManual::manual().window()->isVisible());
    QVERIFY(m_alerts.isEmpty());
}

void tst_QWManualReal::archiveCannotLeaveItsFolder_data()
{
    QTest::addColumn<QByteArray>("script");
    QTest::newRow("parent folder") << QByteArray("z.writestr('../escaped.html','x')");
    QTest::newRow("far up") << QByteArray("z.writestr('a/../../../escaped.html','x')");
    QTest::newRow("absolute name") << QByteArray("z.writestr('/TARGET/escaped.html','x')");
    QTest::newRow("backslashes") << QByteArray("z.writestr('..\\\\escaped.html','x')");
    QTest::newRow("through a link to the parent") << QByteArray("link('up','..')\nz.writestr('up/escaped.html','x')");
    QTest::newRow("through an absolute link") << QByteArray("link('up','/TARGET')\nz.writestr('up/escaped.html','x')");
    QTest::newRow("over a link to a file")
        << QByteArray("link('page.html','/TARGET/precious')\nz.writestr('page.html','x')");
    QTest::newRow("link given as a folder") << QByteArray("link('up/','..')\nz.writestr('up/escaped.html','x')");
}

void tst_QWManualReal::archiveCannotLeaveItsFolder()
{
    QFETCH(QByteArray, script);
    const QString outside = QFileInfo(supportFolder()).absoluteFilePath();
    writeTo(outside + "/precious", "kept");
    script.replace("TARGET", outside.mid(1).toUtf8());
    hostCarries(archiveOf(script + "\nz.writestr('index.html','''" + pageWithVersion("2.1") + "''')"));
    openAndWaitForCheck();

    QCOMPARE(contentsOf(outside + "/precious"), "kept");
    QCOMPARE(QDir(outside).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), QStringList({"Manual", "precious"}));
    QVERIFY(!QFile::exists(QFileInfo(outside).path() + "/escaped.html"));
    QVERIFY(QWManual::manual().window()->isVisible());
}

void tst_QWManualReal::updateIsDownloadedAndInstalled()
{
    hostCarries(goodArchive("2.1"));
    m_site->setManualVersion("2.2");
    m_site->setManualArchive(goodArchive("2.2"));
    openAndWaitForCheck();
    QCOMPARE(m_alerts, QStringList("A newer version of the manual is available"));
    QTRY_COMPARE(contentsOf(index()), pageWithVersion("2.2"));
    QTRY_VERIFY(isIdle());

    const HttpRequest &question = m_site->requests().front();
    QCOMPARE(question.query.queryItemValue("appCode"), "MV");
    QCOMPARE(question.query.queryItemValue("version"), "2");
    QCOMPARE(m_site->requests().back().path, "/support/manuals/mv/2/Manual.zip");
}

void tst_QWManualReal::badSiteChangesNothing_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<int>("status");
    QTest::addColumn<int>("cutAfter");
    QTest::newRow("garbage") << QByteArray("\x00\xff<plist>\x01garbage", 18) << 200 << -1;
    QTest::newRow("a web page") << QByteArray("<html>hello</html>") << 200 << -1;
    QTest::newRow("not found") << QByteArray("<plist><dict><key>version</key><string>9</string></dict></plist>") << 404
                               << -1;
    QTest::newRow("cut short") << QByteArray("<plist><dict><key>version</key><string>9</string></dict></plist>") << 200
                               << 30;
}

void tst_QWManualReal::badSiteChangesNothing()
{
    QFETCH(const QByteArray, body);
    QFETCH(const int, status);
    QFETCH(const int, cutAfter);
    hostCarries(goodArchive("2.1"));
    HttpReply reply = HttpReply::text(body);
    reply.status = status;
    reply.cutAfter = cutAfter;
    m_site->answer("/support/manual_version.php", reply);
    openAndWaitForCheck();
    QCOMPARE(m_site->requests().size(), 1U);
    QVERIFY(m_alerts.isEmpty());
}

void tst_QWManualReal::siteThatIsDownIsSilent()
{
    hostCarries(goodArchive("2.1"));
    m_site.reset(); // nobody listens at its address any more
    openAndWaitForCheck();
    QVERIFY(m_alerts.isEmpty());
}

/// Opens a manual for which there is a newer one, whose download is answered with @p reply, and takes it.
void tst_QWManualReal::offerUpdate(const HttpReply &reply)
{
    hostCarries(goodArchive("2.1"));
    m_site->setManualVersion("2.2");
    m_site->answer("/support/manuals/mv/2/Manual.zip", reply);
    openAndWaitForCheck();
    QTRY_COMPARE(m_alerts.value(0), "A newer version of the manual is available");
}

void tst_QWManualReal::failedDownloadKeepsTheManual_data()
{
    QTest::addColumn<int>("status");
    QTest::addColumn<int>("cutAfter");
    QTest::newRow("not found") << 404 << -1;
    QTest::newRow("broken server") << 500 << -1;
    QTest::newRow("cut short") << 200 << 50;
}

void tst_QWManualReal::failedDownloadKeepsTheManual()
{
    QFETCH(const int, status);
    QFETCH(const int, cutAfter);
    HttpReply reply = HttpReply::text(goodArchive("2.2"), "application/zip");
    reply.status = status;
    reply.cutAfter = cutAfter;
    offerUpdate(reply);

    QTRY_COMPARE(m_alerts.value(1), "The downloading of the manual failed");
    QTRY_VERIFY(isIdle());
    QCOMPARE(contentsOf(index()), pageWithVersion("2.1"));
    QVERIFY(!QFile::exists(QWApplication::sharedApplication()->tempDirectory() + "/Manual.zip"));
}

void tst_QWManualReal::downloadWithoutLengthIsInstalled()
{
    HttpReply reply = HttpReply::text(goodArchive("2.2"), "application/zip");
    reply.sendLength = false;
    offerUpdate(reply);
    QTRY_COMPARE(contentsOf(index()), pageWithVersion("2.2"));
    QCOMPARE(m_alerts.size(), 1);
}

void tst_QWManualReal::slowDownloadCanBeStopped()
{
    HttpReply reply = HttpReply::text(goodArchive("2.2"), "application/zip");
    reply.pieceSize = 50;
    reply.cutAfter = 100;
    reply.stayAfterPieces = true;
    offerUpdate(reply);
    QTRY_VERIFY(child<QProgressBar>("progressBar")->value() > 0);
    QTest::mouseClick(child<QPushButton>("progressStopButton"), Qt::LeftButton);

    QVERIFY(isIdle());
    QCOMPARE(contentsOf(index()), pageWithVersion("2.1"));
    QTRY_VERIFY(!QFile::exists(QWApplication::sharedApplication()->tempDirectory() + "/Manual.zip"));
    QCOMPARE(m_alerts.size(), 1);
}

/// An archive may forbid what it holds; the manual must be read all the same, and replaced.
void tst_QWManualReal::foldersWithoutPermissionsAreReplaced()
{
    const OrdinaryUser user;
    hostCarries(archiveOf("z.writestr('index.html','''" + pageWithVersion("2.1") +
                          "''')\n"
                          "i=zipfile.ZipInfo('shut/'); i.create_system=3; i.external_attr=(0o040000<<16)|0x10; "
                          "z.writestr(i,'')\n"
                          "i=zipfile.ZipInfo('shut/b.html'); i.create_system=3; i.external_attr=0o100000<<16; "
                          "z.writestr(i,'b')"));
    m_site->setManualVersion("2.2");
    m_site->setManualArchive(goodArchive("2.2"));
    QWManual::openManual();
    QCOMPARE(contentsOf(supportFolder() + "/Manual/shut/b.html"), "b");
    QVERIFY(QFile::setPermissions(supportFolder() + "/Manual/shut", {})); // as an older version left it
    QTRY_COMPARE(contentsOf(index()), pageWithVersion("2.2"));
    QVERIFY(!QFile::exists(supportFolder() + "/Manual/shut"));
    QCOMPARE(m_alerts, QStringList("A newer version of the manual is available"));
}

void tst_QWManualReal::brokenUpdateLeavesAWorkingWindow()
{
    offerUpdate(HttpReply::text("not an archive", "application/zip"));
    QTRY_COMPARE(contentsOf(index()), "(missing)"); // the old manual went before the unpacking, which is not checked
    QTRY_VERIFY(isIdle());
    QVERIFY(QWManual::manual().window()->isVisible());
    QWManual::openLegal();
    QCOMPARE(m_alerts.size(), 1);
}

void tst_QWManualReal::pdfHoldsThePage()
{
    hostCarries(goodArchive("2.1"));
    QWManual::openManual();
    QSignalSpy loaded(QWManual::manual().contentView(), &platform::WebView::loadFinished);
    QVERIFY(loaded.wait(20'000));
    const QString path = QDir::homePath() + "/manual.pdf";
    std::optional<bool> written;
    QWManual::manual().contentView()->printToPdf(path, [&](bool ok) { written = ok; });
    QTRY_VERIFY(written);
    QVERIFY(*written);
    QVERIFY(contentsOf(path).startsWith("%PDF-"));
}

void tst_QWManualReal::escapeInThePageClosesTheWindow()
{
    hostCarries(goodArchive("2.1"));
    QWManual::openManual();
    platform::Panel *const window = QWManual::manual().window();
    platform::WebView *const view = QWManual::manual().contentView();
    QSignalSpy loaded(view, &platform::WebView::loadFinished);
    QVERIFY(loaded.wait(20'000));
    QVERIFY(QTest::qWaitForWindowActive(window));
    view->widget()->setFocus();
    QTRY_VERIFY(QApplication::focusWidget());
    QVERIFY(view->widget() == QApplication::focusWidget() || view->widget()->isAncestorOf(QApplication::focusWidget()));
    QTest::keyClick(window->windowHandle(), Qt::Key_Escape);
    QTRY_VERIFY(!window->isVisible());
}

QW_TEST_MAIN(tst_QWManualReal)
#include "tst_QWManualReal.moc"

#include "ManualArchives.h"
#include "RealManualTest.h"
#include "fakes/QWTestMain.h"
#include "plugins/OrdinaryUser.h"

#include <QWPlatform/appkit/Panel.h>
#include <QWUtilities/shell/QWManual.h>

#include <QFile>
#include <QProgressBar>
#include <QPushButton>

using namespace manuals;

/// Newer manuals that the site offers, or says that it offers.
class tst_QWManualUpdateReal : public RealManualTest
{
    Q_OBJECT

private Q_SLOTS:
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

private:
    template <class T>
    static T *child(const char *name)
    {
        return QWManual::manual().window()->findChild<T *>(name);
    }
    static bool isIdle() { return !child<QWidget>("progressBar")->isVisible(); }
    void offerUpdate(const HttpReply &reply);
};

void tst_QWManualUpdateReal::updateIsDownloadedAndInstalled()
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

void tst_QWManualUpdateReal::badSiteChangesNothing_data()
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

void tst_QWManualUpdateReal::badSiteChangesNothing()
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

void tst_QWManualUpdateReal::siteThatIsDownIsSilent()
{
    hostCarries(goodArchive("2.1"));
    m_site.reset(); // nobody listens at its address any more
    openAndWaitForCheck();
    QVERIFY(m_alerts.isEmpty());
}

/// Opens a manual for which there is a newer one, whose download is answered with @p reply, and takes it.
void tst_QWManualUpdateReal::offerUpdate(const HttpReply &reply)
{
    hostCarries(goodArchive("2.1"));
    m_site->setManualVersion("2.2");
    m_site->answer("/support/manuals/mv/2/Manual.zip", reply);
    openAndWaitForCheck();
    QTRY_COMPARE(m_alerts.value(0), "A newer version of the manual is available");
}

void tst_QWManualUpdateReal::failedDownloadKeepsTheManual_data()
{
    QTest::addColumn<int>("status");
    QTest::addColumn<int>("cutAfter");
    QTest::newRow("not found") << 404 << -1;
    QTest::newRow("broken server") << 500 << -1;
    QTest::newRow("cut short") << 200 << 50;
}

void tst_QWManualUpdateReal::failedDownloadKeepsTheManual()
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

void tst_QWManualUpdateReal::downloadWithoutLengthIsInstalled()
{
    HttpReply reply = HttpReply::text(goodArchive("2.2"), "application/zip");
    reply.sendLength = false;
    offerUpdate(reply);
    QTRY_COMPARE(contentsOf(index()), pageWithVersion("2.2"));
    QCOMPARE(m_alerts.size(), 1);
}

void tst_QWManualUpdateReal::slowDownloadCanBeStopped()
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
void tst_QWManualUpdateReal::foldersWithoutPermissionsAreReplaced()
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

void tst_QWManualUpdateReal::brokenUpdateLeavesAWorkingWindow()
{
    offerUpdate(HttpReply::text("not an archive", "application/zip"));
    QTRY_COMPARE(contentsOf(index()), "(missing)"); // the old manual went before the unpacking, which is not checked
    QTRY_VERIFY(isIdle());
    QVERIFY(QWManual::manual().window()->isVisible());
    QWManual::openLegal();
    QCOMPARE(m_alerts.size(), 1);
}

QW_TEST_MAIN(tst_QWManualUpdateReal)
#include "tst_QWManualUpdateReal.moc"

#include "ManualFixture.h"
#include "fakes/QWTestMain.h"

#include <QWPlatform/foundation/Bundle.h>
#include <QWPlatform/foundation/PropertyList.h>

#include <QLabel>
#include <QProgressBar>
#include <QPushButton>

/// A newer manual: whether it is looked for, offered, fetched and put in the old one's place.
class tst_QWManualUpdate : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void newerVersionIsOffered_data();
    void newerVersionIsOffered();
    void unknownLocalVersionIsOutOfDate_data();
    void unknownLocalVersionIsOutOfDate();
    void answerWithoutVersionIsOlderThanAnyManual();
    void siteWithoutAnswerIsSilent_data();
    void siteWithoutAnswerIsSilent();
    void offerIsMadeOncePerWindow();
    void offerStandsAboveTheManual();
    void laterDownloadsNothing();
    void downloadGoesToTheTemporaryFolder();
    void withoutATemporaryFolderNothingIsDownloaded();
    void progressShowsTheFraction_data();
    void progressShowsTheFraction();
    void finishedDownloadReplacesTheManual();
    void folderThatCannotBeEmptiedIsTold();
    void failedDownloadIsToldAndKeepsTheManual();
    void stopCancelsTheDownload();
    void progressKeepsItsRoom();
};

void tst_QWManualUpdate::newerVersionIsOffered_data()
{
    QTest::addColumn<QVariant>("remote");
    QTest::addColumn<QByteArray>("local");
    QTest::addColumn<bool>("offered");

    QTest::newRow("the same") << QVariant("2.1") << QByteArray("2.1") << false;
    QTest::newRow("newer") << QVariant("2.2") << QByteArray("2.1") << true;
    QTest::newRow("older") << QVariant("2.0") << QByteArray("2.1") << false;
    QTest::newRow("dots are dropped: 210 > 29") << QVariant("2.10") << QByteArray("2.9") << true;
    QTest::newRow("dots are dropped: 10 < 95") << QVariant("10") << QByteArray("9.5") << false;
    QTest::newRow("dots make no difference") << QVariant("2.1.3") << QByteArray("213") << false;
    QTest::newRow("leading number only") << QVariant("2.2b1") << QByteArray("2.2") << false;
    QTest::newRow("no number") << QVariant("new") << QByteArray("0") << false;
    QTest::newRow("no local number") << QVariant("0.1") << QByteArray("") << true;
    QTest::newRow("a number instead of text") << QVariant(22) << QByteArray("2.1") << true;
    QTest::newRow("a list instead of text") << QVariant(QVariantList{"9"}) << QByteArray("2.1") << false;
    QTest::newRow("negative is large without a sign") << QVariant("-1") << QByteArray("2.1") << true;
    QTest::newRow("too large for 32 bits") << QVariant("99999999999999999999") << QByteArray("2147483647") << false;
    QTest::newRow("largest signed against negative") << QVariant("9999999999") << QByteArray("-1") << false;
    QTest::newRow("38 characters are found") << QVariant("1") << QByteArray(38, '0') << true;
    QTest::newRow("38 characters are found, not older") << QVariant("0") << QByteArray(38, '0') << false;
    QTest::newRow("39 characters are not found") << QVariant("0") << QByteArray(39, '0') << true;
}

void tst_QWManualUpdate::newerVersionIsOffered()
{
    QFETCH(const QVariant, remote);
    QFETCH(const QByteArray, local);
    QFETCH(const bool, offered);

    const ManualFixture host;
    host.system.alerts.answerWith({"Later"});
    host.install(ManualFixture::pageWithVersion(local));
    host.siteOffers(remote);
    host.open();

    QCOMPARE(host.system.urlLoader.requestedUrls(), QStringList(ManualFixture::question));
    QCOMPARE(host.system.alerts.shown.size(), offered ? 1 : 0);
}

void tst_QWManualUpdate::unknownLocalVersionIsOutOfDate_data()
{
    QTest::addColumn<QByteArray>("page");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("no tag") << QByteArray("<html></html>");
    QTest::newRow("tag in another case") << QByteArray("<META name=\"qw_manual_version\" content=\"9\">");
    QTest::newRow("cut off in the value") << QByteArray("<meta name=\"qw_manual_version\" content=\"9");
    QTest::newRow("cut off in the end") << QByteArray("<meta name=\"qw_manual_version\" content=\"9\"");
    QTest::newRow("closed the other way") << QByteArray("<meta name=\"qw_manual_version\" content=\"9\"/>");
    QTest::newRow("not UTF-8") << QByteArray("\xff\xfe") + ManualFixture::pageWithVersion("9");
}

void tst_QWManualUpdate::unknownLocalVersionIsOutOfDate()
{
    QFETCH(const QByteArray, page);
    const ManualFixture host;
    host.system.alerts.answerWith({"Later"});
    host.install(page);
    host.siteOffers("0");
    host.open();
    QCOMPARE(host.system.alerts.shown, QStringList("A newer version of the manual is available"));
}

void tst_QWManualUpdate::answerWithoutVersionIsOlderThanAnyManual()
{
    const ManualFixture host;
    host.install(ManualFixture::pageWithVersion("0.1"));
    host.system.urlLoader.answer(ManualFixture::question, platform::PropertyList::toXml(QVariantMap{{"Version", "9"}}));
    host.open();
    QCOMPARE(host.system.urlLoader.requestedUrls().size(), 1);
    QVERIFY(host.system.alerts.shown.isEmpty());
}

void tst_QWManualUpdate::siteWithoutAnswerIsSilent_data()
{
    QTest::addColumn<QByteArray>("answer");
    QTest::addColumn<int>("status");
    const QByteArray good = platform::PropertyList::toXml(QVariantMap{{"version", "9"}});
    QTest::newRow("nothing") << QByteArray() << 200;
    QTest::newRow("a web page") << QByteArray("<html><body>Welcome</body></html>") << 200;
    QTest::newRow("cut short") << good.left(good.size() / 2) << 200;
    QTest::newRow("a list of another kind") << platform::PropertyList::toXml(QVariantList{"9"}) << 200;
    QTest::newRow("not found") << good << 404;
    QTest::newRow("broken server") << good << 500;
}

void tst_QWManualUpdate::siteWithoutAnswerIsSilent()
{
    QFETCH(const QByteArray, answer);
    QFETCH(const int, status);
    const ManualFixture host; // no manual here at all: any version would be newer
    host.system.urlLoader.answer(ManualFixture::question, answer, status);
    host.open();
    QVERIFY(host.system.alerts.shown.isEmpty());
}

void tst_QWManualUpdate::offerIsMadeOncePerWindow()
{
    const ManualFixture host;
    host.system.alerts.answerWith({"Later", "Later"});
    host.siteOffers("2.2");
    host.open();
    QWManual::manual().window()->close();
    host.open();

    QCOMPARE(host.system.alerts.alerts.size(), 1U);
    const platform::Alert &offer = host.system.alerts.alerts.front();
    QCOMPARE(offer.messageText, "A newer version of the manual is available");
    QCOMPARE(offer.informativeText, "Would you like to download the update now?");
    QCOMPARE(offer.buttons, QStringList({"Download", "Later"}));
}

void tst_QWManualUpdate::offerStandsAboveTheManual()
{
    ManualFixture host;
    QWidget hostWindow;
    hostWindow.show();
    QWidget *active = nullptr;
    host.system.alerts.whileShown = [&] { active = QApplication::activeWindow(); };
    host.system.alerts.answerWith({"Later"});
    host.siteOffers("2.2");
    QWManual::openManual();
    QApplication::setActiveWindow(&hostWindow); // the answer comes while the host's window is still the active one
    QTRY_COMPARE(host.system.backgroundWork().running(), 0);

    QVERIFY(active);
    QCOMPARE(active, QWManual::manual().window());
}

void tst_QWManualUpdate::laterDownloadsNothing()
{
    const ManualFixture host;
    host.system.alerts.answerWith({"Later"});
    host.siteOffers("2.2");
    host.open();
    QVERIFY(host.system.urlDownloads.started.empty());
    QVERIFY(!host.child<QLabel>("progressText")->isVisible());
}

void tst_QWManualUpdate::downloadGoesToTheTemporaryFolder()
{
    const ManualFixture host;
    host.startUpdate();
    const auto &download = host.system.urlDownloads.started.front()->request;
    QCOMPARE(download.url, QUrl("http://support.test/support/manuals/th/2/Manual.zip"));
    QCOMPARE(download.destination, QWApplication::sharedApplication()->tempDirectory() + "/Manual.zip");
    QVERIFY(download.overwrite); // what an update that was stopped has left
    QCOMPARE(host.child<QLabel>("progressText")->text(), "Downloading update...");
    for (const char *name : {"progressText", "progressBar", "progressStopButton"})
        QVERIFY2(host.child<QWidget>(name)->isVisible(), name);
}

void tst_QWManualUpdate::withoutATemporaryFolderNothingIsDownloaded()
{
    const QByteArray before = qgetenv("TMPDIR");
    QVERIFY(QDir(QWApplication::sharedApplication()->tempDirectory()).removeRecursively());
    const ManualFixture host;
    qputenv("TMPDIR", QFile::encodeName(host.system.real("~/none")));
    host.install(ManualFixture::pageWithVersion("2.1"));
    host.siteOffers("2.2");
    host.open();
    before.isNull() ? qunsetenv("TMPDIR") : qputenv("TMPDIR", before);
    QVERIFY(host.system.urlDownloads.started.empty());
    QCOMPARE(host.system.alerts.shown, QStringList({"A newer version of the manual is available",
                                                    "A folder for temporary files could not be made."}));
    QVERIFY(!host.child<QLabel>("progressText")->isVisible());
}

void tst_QWManualUpdate::progressShowsTheFraction_data()
{
    QTest::addColumn<qint64>("length");
    QTest::addColumn<double>("fraction");
    QTest::newRow("known length") << qint64(400) << 0.25;
    QTest::newRow("no length") << qint64(-1) << 0.0;
    QTest::newRow("nothing announced") << qint64(0) << 1.0;
    QTest::newRow("more than announced") << qint64(50) << 1.0;
}

void tst_QWManualUpdate::progressShowsTheFraction()
{
    QFETCH(const qint64, length);
    QFETCH(const double, fraction);
    const ManualFixture host;
    host.startUpdate();
    const auto *bar = host.child<QProgressBar>("progressBar");
    host.system.urlDownloads.respond(length);
    QCOMPARE(bar->value(), 0);
    host.system.urlDownloads.receive(QByteArray(60, 'x'));
    host.system.urlDownloads.receive(QByteArray(40, 'x'));
    QVERIFY(bar->maximum() > 0);
    QCOMPARE(bar->value(), static_cast<int>(fraction * bar->maximum()));
}

void tst_QWManualUpdate::finishedDownloadReplacesTheManual()
{
    ManualFixture host;
    host.startUpdate();
    host.system.writeFile(ManualFixture::folder + QString("/old.html"), "old");
    host.view().load(QUrl("about:blank"));
    QString shown;
    bool busy = false;
    host.system.processes.handler = [&](const auto &request) {
        shown = host.child<QLabel>("progressText")->text();
        busy = host.child<QProgressBar>("progressBar")->maximum() == 0;
        return host.unzip(request);
    };
    host.system.urlDownloads.respond(3);
    host.system.urlDownloads.receive("PK!");
    host.system.urlDownloads.finish();

    QCOMPARE(shown, "Installing update...");
    QVERIFY(busy);
    QCOMPARE(host.entriesBeforeUnpacking, QStringList());
    const QString archive = QWApplication::sharedApplication()->tempDirectory() + "/Manual.zip";
    QCOMPARE(host.system.processes.runs.size(), 1U);
    QCOMPARE(host.system.processes.runs.front().arguments,
             QStringList({"-q", archive, "-d", host.system.real(ManualFixture::folder)}));
    QCOMPARE(host.view().url(), host.indexUrl());
    QVERIFY(!host.child<QWidget>("progressStopButton")->isVisible());
}

void tst_QWManualUpdate::folderThatCannotBeEmptiedIsTold()
{
    ManualFixture host;
    host.startUpdate();
    host.archiveIsGood = false;
    host.system.alerts.shown.clear();
    host.leadFolderToOneThatCannotBeEmptied();
    host.system.urlDownloads.finish();

    QCOMPARE(host.system.alerts.shown.size(), 1);
    QVERIFY(host.system.alerts.shown.first().contains("could not be emptied"));
    QVERIFY(!host.child<QWidget>("progressBar")->isVisible());
}

void tst_QWManualUpdate::failedDownloadIsToldAndKeepsTheManual()
{
    const ManualFixture host;
    host.startUpdate();
    host.system.alerts.shown.clear();
    host.system.urlDownloads.fail("The server hung up.");

    QCOMPARE(host.system.alerts.shown, QStringList("The downloading of the manual failed"));
    QCOMPARE(host.system.alerts.alerts.back().informativeText, "The server hung up.");
    QVERIFY(host.system.processes.runs.empty());
    QCOMPARE(host.system.readFile(host.indexPath()).value_or(""), ManualFixture::pageWithVersion("2.1"));
    QVERIFY(!host.child<QWidget>("progressBar")->isVisible());
}

void tst_QWManualUpdate::stopCancelsTheDownload()
{
    const ManualFixture host;
    host.startUpdate();
    QTest::mouseClick(host.child<QPushButton>("progressStopButton"), Qt::LeftButton);

    QVERIFY(host.system.urlDownloads.started.front()->cancelled);
    for (const char *name : {"progressText", "progressBar", "progressStopButton"})
        QVERIFY2(!host.child<QWidget>(name)->isVisible(), name);
    QCOMPARE(host.system.readFile(host.indexPath()).value_or(""), ManualFixture::pageWithVersion("2.1"));
    QWManual::manual().stopProgress(); // nothing runs any more
}

void tst_QWManualUpdate::progressKeepsItsRoom()
{
    const ManualFixture host;
    host.startUpdate();
    const auto *const page = host.child<QWidget>("contentView");
    QCoreApplication::processEvents();
    const QRect during = page->geometry();
    QWManual::manual().stopProgress();
    QCoreApplication::processEvents();
    QCOMPARE(page->geometry(), during);
}

QW_TEST_MAIN(tst_QWManualUpdate)
#include "tst_QWManualUpdate.moc"

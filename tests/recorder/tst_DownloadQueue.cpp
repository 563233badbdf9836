#include "RecorderTools.h"

#include <QWUtilities/recorder/browse/DownloadQueue.h>
#include <QWUtilities/recorder/browse/TransferRate.h>

#include <QWPlatform/foundation/Bundle.h>
#include <QWPlatform/foundation/UserDefaults.h>

#include <QTest>

using namespace recordertest;
using namespace std::chrono_literals;
using platform::FilePanels;

namespace
{
/// A browser that wires the queue as the window does; its sheet is what it notes.
class QueueBrowser : public qw::RecorderBrowser, public qw::DownloadQueueView
{
public:
    bool recordingUpdateProgress(QWVeskRecording &recording, float fraction) override
    {
        return queue.recordingUpdateProgress(recording, fraction);
    }

    void recordingDidFinishDownloading(QWVeskRecording &recording) override
    {
        queue.recordingDidFinishDownloading(recording);
    }

    void recordingDidStopDownloading(QWVeskRecording &recording) override
    {
        queue.recordingDidStopDownloading(recording);
    }

    void recordingDidFailDownloading(QWVeskRecording &recording, const QString &reason) override
    {
        queue.recordingDidFailDownloading(recording, reason);
    }

    Recordings selectedRecordings() const override { return selected; }
    QString selectedFormatTitle() const override { return formatTitle; }
    bool opensAfterSave() const override { return opens; }
    void beginProgressSheet() override { ++sheets; }
    void endProgressSheet() override { --sheets; }
    void setWindowCanHide(bool can) override { canHide = can; }
    void setProgressText(const QString &text) override { texts.append(text); }
    void setProgress(double fraction) override { progress.push_back(fraction); }
    void setProgressDetails(const qw::DownloadProgress &newDetails) override { details.push_back(newDetails); }
    void showFailure(const QString &line) override { failureLines.append(line); }
    void showFailures(const std::vector<qw::FailedDownload> &failures) override
    {
        for (const qw::FailedDownload &failure : failures)
            failedTitles.append(failure.recording->title());
    }

    Recordings selected;
    QString formatTitle = "WAVE";
    bool opens = false;
    int sheets = 0;
    bool canHide = true;
    QStringList texts;
    std::vector<double> progress;
    std::vector<qw::DownloadProgress> details;
    QStringList failureLines;
    QStringList failedTitles;
    qw::DownloadQueue queue{*this};
};

QVariantMap titled(const QString &title)
{
    return {{"title", title}, {"filename", title.toLower()}};
}
} // namespace

class tst_DownloadQueue : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_system = std::make_unique<FakeSystem>();
        m_scope = std::make_unique<platform::SystemScope>(*m_system);
        m_system->makeDirectory("~/Music");
        m_browser = std::make_unique<QueueBrowser>();
        select({titled("A"), titled("B"), titled("C")});
    }

    void cleanup()
    {
        m_browser.reset();
        m_device.reset();
        m_scope.reset();
        m_system.reset();
    }

    void choosesAFolder()
    {
        queue().save();
        queue().save();
        QCOMPARE(m_system->filePanels.opens.size(), size_t(1));
        const platform::OpenPanelRequest &request = m_system->filePanels.opens.front();
        QVERIFY(request.directories && !request.multiple);
        QCOMPARE(request.confirmTitle, "Save");
        m_system->filePanels.endOpen(FilePanels::Cancel);
        QVERIFY(downloads().started.empty() && !queue().isBusy());
        queue().save();
        QCOMPARE(m_system->filePanels.opens.size(), size_t(2));
    }

    void savesOneTakeAfterTheOtherInTheirOrder()
    {
        begin();
        QCOMPARE(m_browser->sheets, 1);
        QVERIFY(!m_browser->canHide);
        QCOMPARE(m_browser->texts, QStringList{"Downloading “A”..."});
        QCOMPARE(m_browser->progress, std::vector{0.0});
        for (const char *title : {"A", "B", "C"}) {
            QCOMPARE(downloads().started.back()->request.destination, folder() + '/' + title + ".wav");
            QCOMPARE(m_browser->texts.back(), QString("Downloading “%1”...").arg(title));
            downloads().respond(4);
            downloads().receive("1234");
            downloads().finish();
        }
        QCOMPARE(downloads().started.size(), size_t(3));
        QCOMPARE(m_browser->progress, (std::vector{0.0, 1.0, 1.0, 0.0, 1.0, 1.0, 0.0, 1.0, 1.0}));
        QCOMPARE(m_browser->sheets, 0);
        QVERIFY(m_browser->canHide && !queue().isBusy());
        QCOMPARE(m_system->readFile("~/Music/C.wav"), "1234");
        QVERIFY(m_system->workspace.openedFiles.isEmpty());
    }

    void nothingBeginsWhenNothingIsLeftSelected()
    {
        queue().save();
        m_browser->selected.clear();
        m_system->filePanels.endOpen(FilePanels::OK, {folder()});
        QVERIFY(downloads().started.empty());
        QCOMPARE(m_browser->sheets, 0);
        QVERIFY(m_browser->canHide && !queue().isBusy());
    }

    void theSelectionCountsThatIsThereWhenTheFolderIsChosen()
    {
        queue().save();
        m_browser->selected.erase(m_browser->selected.begin());
        m_browser->formatTitle = "Podcast";
        m_system->filePanels.endOpen(FilePanels::OK, {folder()});
        QCOMPARE(downloads().started.back()->request.destination, folder() + "/B.m4a");
    }

    void recordersMayLeaveWhileTheyAreDownloadedFrom()
    {
        begin();
        const std::weak_ptr<QWVeskDevice> device = m_device;
        m_device.reset();
        m_browser->selected.clear();
        QVERIFY(!device.expired());
        for (int i = 0; i < 3; ++i)
            finish();
        QCOMPARE(downloads().started.size(), size_t(3));
        QVERIFY(!queue().isBusy());
        QVERIFY(device.expired());
    }

    void stopWaitsForTheNextPieceThenEmptiesTheQueue()
    {
        begin();
        downloads().respond(8);
        queue().stop();
        QVERIFY(queue().isBusy());
        QVERIFY(!downloads().started.back()->cancelled);
        downloads().receive("1");
        QVERIFY(downloads().started.back()->cancelled);
        QCOMPARE(downloads().started.size(), size_t(1));
        QVERIFY(!queue().isBusy());
        QCOMPARE(m_browser->sheets, 0);
        QVERIFY(m_browser->canHide);
    }

    void aStopIsForgottenWithTheNextSave()
    {
        begin();
        queue().stop();
        downloads().receive("1");
        begin();
        downloads().receive("1");
        QVERIFY(queue().isBusy());
    }

    void opensWithTheHostWhatItNames_data()
    {
        QTest::addColumn<QString>("extension");
        QTest::addColumn<bool>("byHost");
        QTest::newRow("named") << "wav" << true;
        QTest::newRow("in another entry") << "wave,WAV" << false;
        QTest::newRow("other case") << "WAV" << false;
        QTest::newRow("not named") << "aif" << false;
    }

    void opensWithTheHostWhatItNames()
    {
        QFETCH(const QString, extension);
        QFETCH(const bool, byHost);
        const QVariantMap first{{"CFBundleTypeName", "Text"}};
        const QVariantMap second{{"CFBundleTypeExtensions", QVariantList{"txt", extension}}};
        restart({{"CFBundleDocumentTypes", QVariantList{first, second}}});
        m_browser->opens = true;
        begin();
        finish();
        const QString path = folder() + "/A.wav";
        if (byHost)
            QCOMPARE(m_system->workspace.openedWith, (QList<QPair<QString, QString>>{{path, "Test Host"}}));
        else
            QCOMPARE(m_system->workspace.openedFiles, QStringList{path});
        QCOMPARE(m_system->workspace.openedFiles.size() + m_system->workspace.openedWith.size(), 1);
    }

    void documentTypesThatAreGarbageDoNotHurt()
    {
        restart({{"CFBundleDocumentTypes", QVariantList{7, "wav", QVariantMap{{"CFBundleTypeExtensions", "wav"}}}}});
        m_browser->opens = true;
        begin();
        finish();
        QCOMPARE(m_system->workspace.openedFiles.size(), 1);
    }

    void opensTheNameAskedForAlsoIfAnotherWasTakenOrAfterAStop()
    {
        m_system->writeFile("~/Music/A.wav", "older");
        m_browser->opens = true;
        begin();
        finish();
        queue().stop();
        downloads().receive("1");
        QCOMPARE(m_system->workspace.openedFiles, QStringList({folder() + "/A.wav", folder() + "/B.wav"}));
        QVERIFY(!m_system->readFile("~/Music/B.wav"));
    }

    void afterAFailureTheSheetWaitsUntilItIsClosed()
    {
        begin();
        downloads().fail("The connection was lost.");
        QCOMPARE(m_browser->failureLines.size(), 1);
        QVERIFY(m_browser->failureLines.front().contains("“A”"));
        QVERIFY(m_browser->failureLines.front().contains("The connection was lost."));
        queue().stop();
        queue().tryAgain();
        QCoreApplication::processEvents();
        QCOMPARE(m_browser->sheets, 1);
        QCOMPARE(queue().recordings().size(), size_t(3));
        QCOMPARE(downloads().started.size(), size_t(1));
        queue().close();
        QCOMPARE(m_browser->sheets, 0);
        QVERIFY(m_browser->canHide && queue().recordings().empty() && queue().failures().empty());
        begin();
        QCOMPARE(m_browser->sheets, 1);
    }

    void closeActsAsTheStopButtonAndGivesAStalledWindowBack()
    {
        begin();
        queue().close();
        QVERIFY(queue().isBusy() && !downloads().started.back()->cancelled);
        queue().close(); // nothing has come since
        QVERIFY(!queue().isBusy() && downloads().started.back()->cancelled);
        QCOMPARE(m_browser->sheets, 0);
    }

    void goesOnAfterAFailureWhereTheUserWantsIt()
    {
        platform::System::current().userDefaults().setObject(
            QString::fromUtf16(qw::DownloadQueue::goesOnAfterFailureKey), true);
        begin();
        downloads().fail("no");
        QCOMPARE(m_browser->texts.back(), "Downloading “B”...");
        finish();
        downloads().fail("no");
        QVERIFY(m_browser->failureLines.isEmpty());
        QCOMPARE(m_browser->failedTitles, QStringList({"A", "C"}));
        QCOMPARE(m_browser->sheets, 1);
        queue().tryAgain();
        QCOMPARE(m_browser->texts.back(), "Downloading “A”...");
        finish();
        finish();
        QCOMPARE(m_browser->sheets, 0);
        QCOMPARE(m_system->readFile("~/Music/C.wav"), "1");
    }

    void whatFailedCanBeLeft()
    {
        platform::System::current().userDefaults().setObject(
            QString::fromUtf16(qw::DownloadQueue::goesOnAfterFailureKey), true);
        select({titled("A")});
        begin();
        downloads().fail("no");
        QCOMPARE(m_browser->failedTitles, QStringList{"A"});
        queue().close();
        QVERIFY(!queue().isBusy());
        queue().tryAgain();
        QCOMPARE(downloads().started.size(), size_t(1));
    }

    void aStopEndsAQueueThatGoesOn()
    {
        platform::System::current().userDefaults().setObject(
            QString::fromUtf16(qw::DownloadQueue::goesOnAfterFailureKey), true);
        begin();
        queue().stop();
        downloads().fail("no");
        QVERIFY(!queue().isBusy());
        QCOMPARE(downloads().started.size(), size_t(1));
    }

    void abandoningLeavesNothingBehind()
    {
        begin();
        downloads().respond(8);
        downloads().receive("1234");
        queue().abandon();
        QVERIFY(downloads().started.back()->cancelled);
        QVERIFY(!queue().isBusy() && m_browser->canHide);
        QCOMPARE(m_browser->sheets, 0);
        QVERIFY(!m_system->readFile("~/Music/A.wav"));
        QVERIFY(m_system->workspace.openedFiles.isEmpty());
    }

    void aChooserThatEndsAfterItsWindowBeginsNothing()
    {
        queue().save();
        queue().abandon();
        m_system->filePanels.endOpen(FilePanels::OK, {folder()});
        QVERIFY(downloads().started.empty());
        queue().save();
        m_browser.reset();
        m_system->filePanels.endOpen(FilePanels::OK, {folder()});
        QVERIFY(downloads().started.empty());
    }

    void aTakeThatWasNotQueuedIsNoneOfItsBusiness()
    {
        m_browser->selected.front()->downloadToAs(folder(), "wav");
        downloads().respond(1);
        downloads().receive("1");
        downloads().finish();
        m_browser->selected.front()->downloadToAs(folder(), "wav");
        downloads().fail("no");
        QVERIFY(m_browser->progress.empty() && m_browser->failureLines.isEmpty());
        QCOMPARE(m_browser->sheets, 0);
    }

    void theQueueGoesInMidDownload()
    {
        begin();
        m_browser.reset();
        QVERIFY(downloads().started.back()->cancelled);
    }

    void aTitleWithMarkupStandsAsItIs()
    {
        select({titled("<b>%@</b>")});
        begin();
        QCOMPARE(m_browser->texts.back(), "Downloading “<b>%@</b>”...");
    }

    void anUnknownFormatTitleLeavesTheFormatAsItWas()
    {
        m_browser->formatTitle = "";
        begin();
        QVERIFY(downloads().started.back()->request.url.toString().endsWith("&format="));
    }

    void theSheetTellsBytesRateAndTimeLeft()
    {
        begin();
        downloads().respond(1000);
        downloads().receive(QByteArray(100, 'x'));
        QCOMPARE(m_browser->details.size(), size_t(1));
        QCOMPARE(m_browser->details.back().received, 100ULL);
        QCOMPARE(m_browser->details.back().expected, 1000ULL);
        QVERIFY(!m_browser->details.back().rate);
        m_system->clock.advance(50ms);
        downloads().receive(QByteArray(100, 'x'));
        QCOMPARE(m_browser->details.size(), size_t(1));
        m_system->clock.advance(950ms);
        downloads().receive(QByteArray(100, 'x'));
        QCOMPARE(m_browser->details.back().rate, 200.0);
        QCOMPARE(m_browser->details.back().secondsLeft, 3.5);
    }

    void withoutALengthNoTimeIsTold()
    {
        begin();
        downloads().respond(-1);
        downloads().receive("1");
        m_system->clock.advance(1s);
        downloads().receive("1");
        QVERIFY(!m_browser->details.back().expected && !m_browser->details.back().secondsLeft);
        QCOMPARE(m_browser->details.back().rate, 1.0);
        QVERIFY(m_browser->progress.back() < 0.001);
    }

    void moreThanWasToldIsNoMoreThanAll()
    {
        begin();
        downloads().respond(1);
        downloads().receive("123");
        QCOMPARE(m_browser->progress.back(), 1.0);
        m_system->clock.advance(1s);
        downloads().receive("123");
        QCOMPARE(m_browser->details.back().secondsLeft, 0.0);
    }

    void theRateIsThatOfTheLastSeconds()
    {
        constexpr qint64 second = 1'000'000'000;
        qw::TransferRate rate;
        QVERIFY(!rate.bytesPerSecond());
        for (int i = 0; i <= 100; ++i)
            rate.add(i * second / 10, static_cast<quint64>(i) * 100);
        QCOMPARE(*rate.bytesPerSecond(), 1000.0);
        for (int i = 1; i <= 60; ++i)
            rate.add(10 * second + i * second / 10, 10000 + static_cast<quint64>(i));
        QCOMPARE(*rate.bytesPerSecond(), 10.0);
        rate.add(17 * second, 5); // begun anew
        QVERIFY(!rate.bytesPerSecond());
    }

private:
    qw::DownloadQueue &queue() { return m_browser->queue; }
    FakeUrlDownloads &downloads() { return m_system->urlDownloads; }
    QString folder() const { return m_system->real("~/Music"); }

    void select(const QVariantList &entries)
    {
        m_device = loadedDevice(*m_system, *m_browser, entries);
        m_browser->selected = m_device->recordings();
    }

    /// A host with more in its Info.plist.
    void restart(const QVariantMap &info)
    {
        m_browser.reset();
        m_device.reset();
        QVariantMap all = FakeSystem::defaultHostInfo();
        all.insert(info);
        m_system->writePropertyList(m_system->mainBundle().path() + "/Contents/Info.plist", all);
        m_browser = std::make_unique<QueueBrowser>();
        select({titled("A")});
    }

    void begin()
    {
        queue().save();
        m_system->filePanels.endOpen(FilePanels::OK, {folder()});
    }

    void finish()
    {
        downloads().respond(1);
        downloads().receive("1");
        downloads().finish();
    }

    std::unique_ptr<FakeSystem> m_system;
    std::unique_ptr<platform::SystemScope> m_scope;
    std::unique_ptr<QueueBrowser> m_browser;
    std::shared_ptr<QWVeskDevice> m_device;
};

QTEST_GUILESS_MAIN(tst_DownloadQueue)
#include "tst_DownloadQueue.moc"

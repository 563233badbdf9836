#include "DownloadQueueTest.h"

#include <QWUtilities/recorder/browse/TransferRate.h>

#include <QWBase/QWApplicationLog.h>

using namespace std::chrono_literals;
using platform::FilePanels;

/// What the queue saves, in which order, and what it tells and opens.
class tst_DownloadQueue : public DownloadQueueTest
{
    Q_OBJECT

private Q_SLOTS:
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

    void whatNoProgramOpensIsLogged()
    {
        m_system->workspace.succeeds = false;
        m_browser->opens = true;
        begin();
        finish();
        QVERIFY(m_system->readFile(QWApplicationLog::sharedLog().path()).value_or("").contains("no program opens"));
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
};

QTEST_GUILESS_MAIN(tst_DownloadQueue)
#include "tst_DownloadQueue.moc"

#include "DownloadQueueTest.h"

#include <QWPlatform/foundation/UserDefaults.h>

#include <QDir>

using platform::FilePanels;

/// How the queue ends: stops, failures, and what the host does meanwhile.
class tst_DownloadQueueEnds : public DownloadQueueTest
{
    Q_OBJECT

private Q_SLOTS:
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
        QCOMPARE(m_browser->failedTitles, QStringList{"A"});
        QCOMPARE(downloads().started.size(), size_t(1));
        queue().close();
        QVERIFY(!queue().isBusy());
    }

    void aStopShowsWhatFailedBefore()
    {
        platform::System::current().userDefaults().setObject(
            QString::fromUtf16(qw::DownloadQueue::goesOnAfterFailureKey), true);
        begin();
        downloads().fail("no");
        queue().stop();
        downloads().receive("1");
        QCOMPARE(m_browser->failedTitles, QStringList{"A"});
        QCOMPARE(m_browser->sheets, 1);
        QCOMPARE(downloads().started.size(), size_t(2));
        queue().tryAgain();
        finish();
        QVERIFY(!queue().isBusy());
        QCOMPARE(m_browser->sheets, 0);
    }

    void whatTheHostDoesWhenItOpensAFileHolds_data()
    {
        QTest::addColumn<QString>("deed");
        for (const char *deed : {"nothing", "stops", "leaves", "begins anew", "destroys"})
            QTest::newRow(deed) << QString(deed);
    }

    void whatTheHostDoesWhenItOpensAFileHolds()
    {
        QFETCH(const QString, deed);
        m_browser->opens = true;
        begin();
        m_system->workspace.whileOpening = [&] {
            m_system->workspace.whileOpening = {};
            QCOMPARE(downloads().started.size(), size_t(1)); // the next begins after it
            if (deed == "stops")
                queue().close();
            else if (deed == "leaves" || deed == "begins anew")
                queue().abandon();
            if (deed == "begins anew")
                begin();
            if (deed == "destroys")
                m_browser.reset();
        };
        finish();
        const size_t expected = deed == "leaves" || deed == "destroys" ? 1 : 2;
        QCOMPARE(downloads().started.size(), expected);
        if (!m_browser)
            return;
        QCOMPARE(queue().isBusy(), deed != "leaves");
        QCOMPARE(queue().recordings().size(), size_t(deed == "leaves" ? 0 : deed == "begins anew" ? 3 : 2));
        downloads().receive("1");
        QCOMPARE(queue().isBusy(), deed != "leaves" && deed != "stops");
        QCOMPARE(m_browser->sheets, queue().isBusy() ? 1 : 0);
    }

    void aStopIsHeardAtAnyMoment_data()
    {
        QTest::addColumn<QString>("moment");
        QTest::addColumn<int>("saved");
        QTest::newRow("before the answer") << "begun" << 0;
        QTest::newRow("before the first piece") << "answered" << 0;
        QTest::newRow("between two takes") << "next begun" << 1;
        QTest::newRow("after the last piece") << "all there" << 2;
    }

    /// A take of which no more data comes is saved; the next piece of any ends the queue.
    void aStopIsHeardAtAnyMoment()
    {
        QFETCH(const QString, moment);
        QFETCH(const int, saved);
        begin();
        if (moment == "next begun" || moment == "all there")
            finish();
        if (moment == "all there") {
            downloads().respond(1);
            downloads().receive("1");
        } else if (moment == "answered") {
            downloads().respond(1);
        }
        queue().stop();
        if (moment == "all there")
            downloads().finish(); // then the third begins, and its first piece ends the queue
        QVERIFY(queue().isBusy());
        downloads().respond(2);
        downloads().receive("1");
        QVERIFY(!queue().isBusy());
        QCOMPARE(m_browser->sheets, 0);
        QCOMPARE(QDir(folder()).entryList(QDir::Files).size(), saved);
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

    void theQueueGoesInMidDownload()
    {
        begin();
        m_browser.reset();
        QVERIFY(downloads().started.back()->cancelled);
    }
};

QTEST_GUILESS_MAIN(tst_DownloadQueueEnds)
#include "tst_DownloadQueueEnds.moc"

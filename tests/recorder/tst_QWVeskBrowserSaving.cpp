#include "BrowserHost.h"
#include "fakes/QWTestMain.h"

#include <QWPlatform/appkit/windows/WindowHiding.h>

#include <QListWidget>
#include <QStackedWidget>

class tst_QWVeskBrowserSaving : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_host = std::make_unique<BrowserHost>(); }
    void cleanup() { m_host.reset(); }

    void sheetTellsWhatIsSaved();
    void windowIsNotHiddenMeanwhile();
    void stopButtonEndsTheQueue();
    void escapeAndCloseAreTheStopButton_data();
    void escapeAndCloseAreTheStopButton();
    void failureWaitsUntilTheSheetIsClosed_data();
    void failureWaitsUntilTheSheetIsClosed();
    void failuresAreListedWhereTheQueueGoesOn();
    void titlesWithMarkupAreTextInTheSheet();
    void longTitlesLeaveTheSheetAsItIs();
    void opensWhatIsSavedWhereWanted();
    void closingTheWindowEndsTheDownload();
    void endingTheApplicationEndsTheDownload();
    void quittingIsNotRefusedByTheSheet();
    void recorderThatLeavesDoesNotEndItsDownload();
    void threeTakesInThreeFormatsWithoutAMouse();
    void searchIsReachedAndLeftByKeyboard();
    void tabGoesRound();

private:
    bool _saveFirst(int count = 1)
    {
        QList<int> rows;
        for (int row = 0; row < count; ++row)
            rows.append(row);
        m_host->table().selectRows(rows);
        return m_host->save();
    }

    QStringList _savedFiles() const { return QDir(m_host->folder()).entryList(QDir::Files, QDir::Name); }

    FakeUrlDownloads &_downloads() const { return m_host->system.urlDownloads; }

    std::unique_ptr<BrowserHost> m_host;
};

void tst_QWVeskBrowserSaving::sheetTellsWhatIsSaved()
{
    QVERIFY(m_host->openWith(BrowserHost::takes(2)));
    QVERIFY(_saveFirst(2));
    const QProgressBar &bar = m_host->outlet<QProgressBar>("progressBar");
    QCOMPARE(m_host->text("progressText"), "Downloading “Take 1”...");
    QCOMPARE(bar.value(), 0);
    _downloads().respond(4);
    m_host->system.clock.advance(std::chrono::seconds(1));
    _downloads().receive("da");
    QCOMPARE(bar.value(), 500);
    QVERIFY2(m_host->text("progressDetails").startsWith("2 bytes of 4 bytes"),
             qPrintable(m_host->text("progressDetails")));
    _downloads().receive("ta");
    _downloads().finish();
    QCOMPARE(m_host->text("progressText"), "Downloading “Take 2”...");
    QCOMPARE(bar.value(), 0);
    QCOMPARE(m_host->text("progressDetails"), QString());
    m_host->finishDownload();
    QVERIFY(!m_host->sheet().isVisible());
    QCOMPARE(_savedFiles(), (QStringList{"Take 1.aif", "Take 2.aif"}));
}

void tst_QWVeskBrowserSaving::windowIsNotHiddenMeanwhile()
{
    QVERIFY(m_host->openWith(BrowserHost::takes(1)));
    QVERIFY(_saveFirst());
    QVERIFY(!platform::windowCanHide(*m_host->window()));
    m_host->finishDownload();
    QVERIFY(platform::windowCanHide(*m_host->window()));
}

void tst_QWVeskBrowserSaving::stopButtonEndsTheQueue()
{
    QVERIFY(m_host->openWith(BrowserHost::takes(3)));
    QVERIFY(_saveFirst(3));
    _downloads().respond(4);
    _downloads().receive("da");
    QTest::mouseClick(&m_host->outlet<QPushButton>("stopButton"), Qt::LeftButton);
    QVERIFY(m_host->sheet().isVisible()); // until the next piece of data
    _downloads().receive("t");
    QVERIFY(!m_host->sheet().isVisible());
    QVERIFY(_downloads().started.back()->cancelled);
    QCOMPARE(_downloads().started.size(), 1U);
    QCOMPARE(_savedFiles(), QStringList());
}

void tst_QWVeskBrowserSaving::escapeAndCloseAreTheStopButton_data()
{
    QTest::addColumn<bool>("closes");
    QTest::newRow("Escape") << false;
    QTest::newRow("the sheet's close button") << true;
}

void tst_QWVeskBrowserSaving::escapeAndCloseAreTheStopButton()
{
    QFETCH(bool, closes);
    QVERIFY(m_host->openWith(BrowserHost::takes(3)));
    QVERIFY(_saveFirst(3));
    _downloads().respond(4);
    if (closes)
        m_host->sheet().close();
    else
        QTest::keyClick(&m_host->sheet(), Qt::Key_Escape);
    QVERIFY(m_host->sheet().isVisible());
    _downloads().receive("da");
    QVERIFY(!m_host->sheet().isVisible());
    QVERIFY(m_host->window()->isVisible());
    QCOMPARE(_downloads().started.size(), 1U);
}

void tst_QWVeskBrowserSaving::failureWaitsUntilTheSheetIsClosed_data()
{
    escapeAndCloseAreTheStopButton_data();
}

void tst_QWVeskBrowserSaving::failureWaitsUntilTheSheetIsClosed()
{
    QFETCH(bool, closes);
    QVERIFY(m_host->openWith(BrowserHost::takes(3)));
    QVERIFY(_saveFirst(3));
    _downloads().respond(8);
    _downloads().receive("da");
    QVERIFY(!m_host->text("progressDetails").isEmpty());
    _downloads().fail("The connection was lost.");
    QCOMPARE(m_host->text("progressDetails"), QString()); // nothing comes any more
    QVERIFY(m_host->text("failureText").contains("“Take 1” was not saved. The connection was lost."));
    QVERIFY(!m_host->outlet<QPushButton>("stopButton").isEnabled());
    QTest::mouseClick(&m_host->outlet<QPushButton>("stopButton"), Qt::LeftButton);
    QVERIFY(m_host->sheet().isVisible());
    QCOMPARE(_downloads().started.size(), 1U);
    if (closes)
        m_host->sheet().close();
    else
        QTest::keyClick(&m_host->sheet(), Qt::Key_Escape);
    QVERIFY(!m_host->sheet().isVisible());
    QVERIFY(platform::windowCanHide(*m_host->window()));
    QVERIFY(_saveFirst()); // the window is as before
    QVERIFY(m_host->outlet<QPushButton>("stopButton").isEnabled());
    QCOMPARE(m_host->text("failureText"), QString());
}

void tst_QWVeskBrowserSaving::failuresAreListedWhereTheQueueGoesOn()
{
    m_host->system.userDefaults().setObject("QWVeskBrowserContinuesAfterFailure", true);
    QVERIFY(m_host->openWith(BrowserHost::takes(3)));
    QVERIFY(_saveFirst(3));
    _downloads().fail("The connection was lost.");
    m_host->finishDownload();
    _downloads().fail("The disk is full.");
    const QListWidget &list = m_host->outlet<QListWidget>("failuresList");
    QCOMPARE(m_host->outlet<QStackedWidget>("progressPages").currentIndex(), 1);
    QCOMPARE(list.count(), 2);
    QCOMPARE(list.item(0)->text(), "Take 1 – The connection was lost.");
    QCOMPARE(list.item(1)->text(), "Take 3 – The disk is full.");
    QTest::mouseClick(&m_host->outlet<QPushButton>("tryAgainButton"), Qt::LeftButton);
    QCOMPARE(m_host->outlet<QStackedWidget>("progressPages").currentIndex(), 0);
    m_host->finishDownload();
    m_host->finishDownload();
    QVERIFY(!m_host->sheet().isVisible());
    QCOMPARE(_savedFiles(), (QStringList{"Take 1.aif", "Take 2.aif", "Take 3.aif"}));
}

void tst_QWVeskBrowserSaving::titlesWithMarkupAreTextInTheSheet()
{
    QVariantMap entry = BrowserHost::take(1);
    entry["title"] = "<b>Loud</b>";
    QVERIFY(m_host->openWith({entry}));
    QVERIFY(_saveFirst());
    QLabel &label = m_host->outlet<QLabel>("progressText");
    QCOMPARE(label.text(), "Downloading “<b>Loud</b>”...");
    QCOMPARE(label.textFormat(), Qt::PlainText);
    _downloads().fail("No such folder <i>.");
    QCOMPARE(m_host->outlet<QLabel>("failureText").textFormat(), Qt::PlainText);
}

void tst_QWVeskBrowserSaving::longTitlesLeaveTheSheetAsItIs()
{
    QVariantMap entry = BrowserHost::take(1);
    entry["title"] = QString(1000, 'x');
    QVERIFY(m_host->openWith({BrowserHost::take(2), entry}));
    QVERIFY(_saveFirst(2));
    const QSize size = m_host->sheet().size();
    m_host->finishDownload();
    QVERIFY(m_host->text("progressText").size() > 1000);
    m_host->sheet().grab();
    QCOMPARE(m_host->sheet().size(), size);
    QVERIFY(size.width() < 600);
    _downloads().fail("The disk is full.");
    QVERIFY(m_host->text("failureText").size() < 300);
    QVERIFY(m_host->text("failureText").contains("The disk is full."));
    m_host->sheet().grab();
    QCOMPARE(m_host->sheet().size(), size);
}

void tst_QWVeskBrowserSaving::opensWhatIsSavedWhereWanted()
{
    QVERIFY(m_host->openWith(BrowserHost::takes(2)));
    QVERIFY(_saveFirst());
    m_host->finishDownload();
    QVERIFY(m_host->system.workspace.openedFiles.isEmpty());
    m_host->outlet<QCheckBox>("openAfterSaveButton").setChecked(true);
    m_host->table().selectRows({1});
    QVERIFY(m_host->save());
    m_host->finishDownload();
    QCOMPARE(m_host->system.workspace.openedFiles, QStringList{m_host->folder() + "/Take 2.aif"});
}

void tst_QWVeskBrowserSaving::closingTheWindowEndsTheDownload()
{
    QVERIFY(m_host->openWith(BrowserHost::takes(2)));
    QVERIFY(_saveFirst(2));
    _downloads().respond(4);
    _downloads().receive("da");
    m_host->window()->close();
    QVERIFY(_downloads().started.back()->cancelled);
    QVERIFY(!m_host->sheet().isVisible());
    QVERIFY(!m_host->window()->isVisible());
    QVERIFY(m_host->open()); // and all works as before
    QVERIFY(_saveFirst());
    m_host->finishDownload();
    QCOMPARE(_savedFiles(), QStringList{"Take 1.aif"});
}

void tst_QWVeskBrowserSaving::endingTheApplicationEndsTheDownload()
{
    QVERIFY(m_host->openWith(BrowserHost::takes(2)));
    QVERIFY(_saveFirst(2));
    _downloads().respond(4);
    _downloads().receive("da");
    m_host->system.releaseShared();
    QVERIFY(_downloads().started.back()->cancelled);
    QCOMPARE(_savedFiles(), QStringList());
}

void tst_QWVeskBrowserSaving::quittingIsNotRefusedByTheSheet()
{
    QVERIFY(m_host->openWith(BrowserHost::takes(2)));
    QVERIFY(_saveFirst(2));
    _downloads().respond(4);
    _downloads().receive("da");
    QEvent quit(QEvent::Quit);
    QCoreApplication::sendEvent(qApp, &quit);
    QVERIFY(quit.isAccepted());
    QVERIFY(_downloads().started.back()->cancelled);
    QVERIFY(!m_host->sheet().isVisible() && !m_host->window()->isVisible());
}

void tst_QWVeskBrowserSaving::recorderThatLeavesDoesNotEndItsDownload()
{
    QVERIFY(m_host->openWith(BrowserHost::takes(2)));
    QVERIFY(_saveFirst(2));
    m_host->system.netServices.withdraw("Vesk on Studio");
    QCOMPARE(m_host->devices(), QStringList());
    m_host->finishDownload();
    m_host->finishDownload();
    QVERIFY(!m_host->sheet().isVisible());
    QCOMPARE(_savedFiles(), (QStringList{"Take 1.aif", "Take 2.aif"}));
}

void tst_QWVeskBrowserSaving::threeTakesInThreeFormatsWithoutAMouse()
{
    QVERIFY(m_host->openWith(BrowserHost::takes(4)));
    QVERIFY(m_host->table().hasFocus());
    BrowserHost::type(Qt::Key_Home);
    for (const int format : {1, 6, 7}) { // WAVE, FLAC, Ogg Vorbis
        for (int press = 0; press < 4; ++press)
            BrowserHost::type(Qt::Key_Tab);
        QVERIFY(m_host->formats().hasFocus());
        BrowserHost::type(Qt::Key_Home);
        for (int press = 0; press < format; ++press)
            BrowserHost::type(Qt::Key_Down);
        for (int press = 0; press < 4; ++press)
            BrowserHost::type(Qt::Key_Backtab, Qt::ShiftModifier);
        BrowserHost::type(Qt::Key_Return);
        QVERIFY(m_host->chooseFolder());
        m_host->finishDownload();
        QVERIFY(m_host->becomesKey());
        QVERIFY(m_host->table().hasFocus());
        BrowserHost::type(Qt::Key_Down);
    }
    QCOMPARE(_savedFiles(), (QStringList{"Take 1.wav", "Take 2.flac", "Take 3.ogg"}));
}

void tst_QWVeskBrowserSaving::searchIsReachedAndLeftByKeyboard()
{
    QVERIFY(m_host->openWith({BrowserHost::take(1), BrowserHost::take(2, "bird"), BrowserHost::take(3, "bird")}));
    BrowserHost::type(Qt::Key_F, Qt::ControlModifier);
    QVERIFY(m_host->searchField().hasFocus());
    QTest::keyClicks(&m_host->searchField(), "bird");
    BrowserHost::type(Qt::Key_Down);
    QVERIFY(m_host->table().hasFocus());
    QCOMPARE(m_host->selectedTitles(), QStringList{"Take 2"});
    BrowserHost::type(Qt::Key_Down, Qt::ShiftModifier);
    BrowserHost::type(Qt::Key_Return);
    QVERIFY(m_host->chooseFolder());
    m_host->finishDownload();
    m_host->finishDownload();
    QCOMPARE(_savedFiles(), (QStringList{"Take 2.aif", "Take 3.aif"}));
}

void tst_QWVeskBrowserSaving::tabGoesRound()
{
    QVERIFY(m_host->openWith(BrowserHost::takes(1)));
    m_host->table().selectRows({0});
    QStringList names;
    do {
        BrowserHost::type(Qt::Key_Tab);
        QWidget *const focus = QApplication::focusWidget();
        names.append(focus == m_host->table().horizontalHeader() ? "header" : focus->objectName());
    } while (names.last() != "recordingTable" && names.size() < 20);
    QCOMPARE(names, (QStringList{"header", "cornerButton", "searchField", "formatPopup", "openAfterSaveButton",
                                 "saveButton", "reloadButton", "deviceTable", "recordingTable"}));
}

QW_TEST_MAIN(tst_QWVeskBrowserSaving)
#include "tst_QWVeskBrowserSaving.moc"

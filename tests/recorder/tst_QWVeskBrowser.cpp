#include "BrowserHost.h"
#include "fakes/QWTestMain.h"

namespace
{
const QStringList everyFormat{"AIFF",
                              "WAVE",
                              "CAF",
                              "AAC",
                              "Podcast",
                              "Apple Lossless",
                              "FLAC",
                              "Ogg Vorbis",
                              "",
                              "Metadata as XML",
                              "Metadata as Text"};
} // namespace

class tst_QWVeskBrowser : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_host = std::make_unique<BrowserHost>(); }
    void cleanup() { m_host.reset(); }

    void beforeItOpensNothingIsThere();
    void opensLookingForRecorders();
    void openingAgainReplacesTheSearch();
    void closingEndsTheSearch();
    void groupIsExpandedAndCannotBeSelected();
    void firstRecorderIsSelectedAndNamedInTheTitle();
    void nameIsNoMarkOfTheTitle();
    void choosingARecorderClearsTheSearch();
    void recorderThatLeavesIsSelectedNoLonger();
    void selectedRecorderStaysSelectedWhenClickedWithControl();
    void withoutARecorderEveryFormatIsOffered();
    void formatsAreThoseOfEverySelectedTake();
    void blueRecorderHasThreeFormats();
    void saveNeedsASelection();
    void lineTellsNumberAndSizeOfTheSelection();
    void closingWritesTheDefaultsAtOnce();
    void saysWhatIsMissing();
    void saysThatTakesAreLoadedOrNobodyAnswers();
    void markupIsText();
    void reloadReadsTheListsAnew();
    void choosingBeforeTheReloadedListsAreThereSelects();
    void thousandPrintersAreNoRecorders();
    void hostsOwnInterfaceWithoutExtrasDoes();
    void withoutInterfaceNothingOpens();

private:
    std::unique_ptr<BrowserHost> m_host;
};

void tst_QWVeskBrowser::beforeItOpensNothingIsThere()
{
    QWVeskBrowser &browser = QWVeskBrowser::sharedInstance();
    browser.save();
    browser.stop();
    browser.searchChanged();
    browser.reload();
    browser.tryAgain();
    browser.closeProgress();
    QVERIFY(!browser.window());
    QVERIFY(m_host->system.netServices.searches.empty());
}

void tst_QWVeskBrowser::opensLookingForRecorders()
{
    QVERIFY(m_host->open());
    QCOMPARE(m_host->system.netServices.searching(), 1);
    QCOMPARE(m_host->system.netServices.searches.front().type, "_http._tcp.");
    QCOMPARE(m_host->system.netServices.searches.front().domain, "local.");
    QCOMPARE(m_host->window()->windowTitle(), "Recordings");
    QCOMPARE(&QWVeskBrowser::sharedInstance(), &QWVeskBrowser::sharedInstance());
}

void tst_QWVeskBrowser::openingAgainReplacesTheSearch()
{
    QVERIFY(m_host->open());
    QWidget *const window = m_host->window();
    QVERIFY(m_host->open());
    QCOMPARE(m_host->window(), window);
    QCOMPARE(m_host->system.netServices.searches.size(), 2U);
    QCOMPARE(m_host->system.netServices.searching(), 1);
}

void tst_QWVeskBrowser::closingEndsTheSearch()
{
    QVERIFY(m_host->openWith(BrowserHost::takes(2)));
    m_host->window()->close();
    QCOMPARE(m_host->system.netServices.searching(), 0);
    QCOMPARE(m_host->devices(), QStringList{"Studio"}); // shown again until a refresh drops it
}

void tst_QWVeskBrowser::groupIsExpandedAndCannotBeSelected()
{
    QVERIFY(m_host->openWith(BrowserHost::takes(2)));
    QTreeView &outline = m_host->outline();
    const QModelIndex group = outline.model()->index(0, 0);
    QCOMPARE(outline.model()->rowCount(), 1);
    QCOMPARE(group.data().toString(), "DEVICES");
    QVERIFY(outline.isExpanded(group));
    QVERIFY(!(group.flags() & Qt::ItemIsSelectable));
    QTest::mouseClick(outline.viewport(), Qt::LeftButton, {}, outline.visualRect(group).center());
    QTest::mouseDClick(outline.viewport(), Qt::LeftButton, {}, outline.visualRect(group).center());
    outline.setFocus();
    for (const Qt::Key key : {Qt::Key_Left, Qt::Key_Minus, Qt::Key_Up, Qt::Key_Home})
        QTest::keyClick(&outline, key);
    QVERIFY(outline.isExpanded(group));
    QCOMPARE(m_host->selectedDevice(), "Studio");
}

void tst_QWVeskBrowser::firstRecorderIsSelectedAndNamedInTheTitle()
{
    QVERIFY(m_host->openWith(BrowserHost::takes(3)));
    QCOMPARE(m_host->selectedDevice(), "Studio");
    QCOMPARE(m_host->window()->windowTitle(), "Recordings – Studio");
    QCOMPARE(m_host->titles(), (QStringList{"Take 1", "Take 2", "Take 3"}));
    QVERIFY(m_host->selectedTitles().isEmpty());
}

void tst_QWVeskBrowser::nameIsNoMarkOfTheTitle()
{
    m_host->announce("Vesk on A [*]", BrowserHost::takes(1));
    QVERIFY(m_host->open());
    QVERIFY(m_host->resolve("Vesk on A [*]", "A [*]"));
    QCOMPARE(m_host->window()->windowTitle(), "Recordings – A [*][*]"); // shown as one
}

void tst_QWVeskBrowser::choosingARecorderClearsTheSearch()
{
    QVERIFY(m_host->openWith({BrowserHost::take(1, "bird"), BrowserHost::take(2)}));
    m_host->announce("Vesk on Stage", {BrowserHost::take(8)}, 8);
    QVERIFY(m_host->resolve("Vesk on Stage", "Stage"));
    m_host->searchField().setText("bird");
    QCOMPARE(m_host->titles(), QStringList{"Take 1"});
    m_host->outline().setFocus();
    QTest::keyClick(&m_host->outline(), Qt::Key_Down);
    QCOMPARE(m_host->selectedDevice(), "Stage");
    QCOMPARE(m_host->searchField().text(), QString());
    QCOMPARE(m_host->titles(), QStringList{"Take 8"});
    QCOMPARE(m_host->window()->windowTitle(), "Recordings – Stage");
}

void tst_QWVeskBrowser::recorderThatLeavesIsSelectedNoLonger()
{
    QVERIFY(m_host->openWith(BrowserHost::takes(2)));
    m_host->announce("Vesk on Stage", {BrowserHost::take(8)}, 8);
    QVERIFY(m_host->resolve("Vesk on Stage", "Stage"));
    m_host->system.netServices.withdraw("Vesk on Studio");
    QCOMPARE(m_host->selectedDevice(), "Stage");
    QCOMPARE(m_host->titles(), QStringList{"Take 8"});
    m_host->system.netServices.withdraw("Vesk on Stage");
    QCOMPARE(m_host->devices(), QStringList());
    QCOMPARE(m_host->titles(), QStringList());
    QCOMPARE(m_host->window()->windowTitle(), "Recordings");
}

void tst_QWVeskBrowser::selectedRecorderStaysSelectedWhenClickedWithControl()
{
    QVERIFY(m_host->openWith(BrowserHost::takes(2)));
    QTreeView &outline = m_host->outline();
    const QModelIndex studio = outline.model()->index(0, 0, outline.model()->index(0, 0));
    QTest::mouseClick(outline.viewport(), Qt::LeftButton, Qt::ControlModifier, outline.visualRect(studio).center());
    QTest::mouseClick(outline.viewport(), Qt::LeftButton, {}, QPoint(20, outline.height() - 10));
    QCOMPARE(m_host->selectedDevice(), "Studio");
    QCOMPARE(m_host->titles().size(), 2);
}

void tst_QWVeskBrowser::withoutARecorderEveryFormatIsOffered()
{
    QVERIFY(m_host->open());
    QCOMPARE(m_host->formatTitles(), everyFormat);
    QCOMPARE(m_host->formats().currentText(), "AIFF");
    QVERIFY(!m_host->saveButton().isEnabled());
    QCOMPARE(m_host->table().model()->rowCount(), 0);
}

void tst_QWVeskBrowser::formatsAreThoseOfEverySelectedTake()
{
    QVERIFY(m_host->openWith({BrowserHost::take(1, {}, {"aac", "flac"}), BrowserHost::take(2, {}, {"flac"})}));
    m_host->table().selectRows({0});
    m_host->formats().setCurrentText("AAC");
    m_host->table().selectRows({0, 1});
    QCOMPARE(m_host->formatTitles(),
             (QStringList{"AIFF", "WAVE", "CAF", "FLAC", "", "Metadata as XML", "Metadata as Text"}));
    QCOMPARE(m_host->formats().currentText(), "AIFF");
    m_host->formats().setCurrentText("FLAC");
    m_host->table().selectRows({1});
    QCOMPARE(m_host->formats().currentText(), "FLAC");
}

void tst_QWVeskBrowser::blueRecorderHasThreeFormats()
{
    m_host->announce("Blue Vesk on Studio", BrowserHost::takes(2));
    QVERIFY(m_host->open());
    QVERIFY(m_host->resolve("Blue Vesk on Studio", "Studio"));
    QCOMPARE(m_host->formatTitles(), (QStringList{"AIFF", "WAVE", "CAF"}));
    m_host->table().selectRows({0});
    QCOMPARE(m_host->formatTitles(), (QStringList{"AIFF", "WAVE", "CAF"}));
}

void tst_QWVeskBrowser::saveNeedsASelection()
{
    QVERIFY(m_host->openWith(BrowserHost::takes(2)));
    QVERIFY(!m_host->saveButton().isEnabled());
    BrowserHost::type(Qt::Key_Return);
    QVERIFY(m_host->system.filePanels.opens.empty());
    m_host->table().selectRows({0});
    QVERIFY(m_host->saveButton().isEnabled());
    QTest::mouseClick(&m_host->saveButton(), Qt::LeftButton);
    QCOMPARE(m_host->system.filePanels.opens.size(), 1U);
}

void tst_QWVeskBrowser::lineTellsNumberAndSizeOfTheSelection()
{
    QVERIFY(m_host->openWith({BrowserHost::take(1), BrowserHost::take(2), BrowserHost::take(3)}));
    QCOMPARE(m_host->text("selectionText"), "3 recordings");
    m_host->table().selectRows({0, 2});
    const QString size = QLocale().formattedDataSize(4000000, 1, QLocale::DataSizeSIFormat);
    QCOMPARE(m_host->text("selectionText"), "2 of 3 recordings, " + size);
    m_host->system.netServices.withdraw("Vesk on Studio");
    QCOMPARE(m_host->text("selectionText"), QString());
}

void tst_QWVeskBrowser::closingWritesTheDefaultsAtOnce()
{
    QVERIFY(m_host->open());
    m_host->clickHeader("channels");
    m_host->window()->close();
    platform::UserDefaults written(m_host->system.userDefaults().path());
    QCOMPARE(written.object("QWVeskBrowserRecordingTableColumns").toList().size(), 5);
    QCOMPARE(written.object("QWVeskBrowserSortDescriptor").typeId(), int(QMetaType::QByteArray));
}

void tst_QWVeskBrowser::saysWhatIsMissing()
{
    QVERIFY(m_host->open());
    QCOMPARE(m_host->emptyText(), "Looking for recorders…");
    m_host->system.netServices.failSearch();
    QVERIFY(m_host->emptyText().contains("no network service is running"));
    QVERIFY(m_host->openWith({}));
    QCOMPARE(m_host->emptyText(), "“Studio” has no recordings.");
    m_host->announce("Vesk on Stage", BrowserHost::takes(2), 8);
    QVERIFY(m_host->resolve("Vesk on Stage", "Stage"));
    m_host->system.netServices.withdraw("Vesk on Studio");
    QCOMPARE(m_host->emptyText(), QString());
    m_host->searchField().setText("bird");
    QCOMPARE(m_host->emptyText(), "No recording has the keyword “bird”.");
    m_host->searchField().clear();
    m_host->system.netServices.withdraw("Vesk on Stage");
    QTRY_VERIFY_WITH_TIMEOUT(m_host->emptyText().startsWith("No recorder was found"), 20000);
}

void tst_QWVeskBrowser::saysThatTakesAreLoadedOrNobodyAnswers()
{
    QVERIFY(m_host->openWith(BrowserHost::takes(1)));
    m_host->announce("Vesk on Stage", BrowserHost::takes(2), 8);
    QTRY_COMPARE(m_host->system.netServices.resolving(), QStringList{"Vesk on Stage"});
    m_host->system.netServices.withdraw("Vesk on Studio"); // the refresh shows the other one
    QCOMPARE(m_host->selectedDevice(), "Stage");
    QCOMPARE(m_host->emptyText(), "Loading the recordings of “Stage”…");
    m_host->system.netServices.failToResolve("Vesk on Stage");
    QVERIFY(m_host->emptyText().startsWith("“Stage” does not answer."));
}

void tst_QWVeskBrowser::markupIsText()
{
    QVariantMap entry = BrowserHost::take(1);
    entry["title"] = QString("<b>Loud</b>\n" + QString(1000, 'x'));
    m_host->announce("Vesk on <i>Studio</i>", {entry});
    QVERIFY(m_host->open());
    QVERIFY(m_host->resolve("Vesk on <i>Studio</i>", "<i>Studio</i>"));
    QVERIFY(m_host->cell(0, "title").startsWith("<b>Loud</b>"));
    QCOMPARE(m_host->window()->windowTitle(), "Recordings – <i>Studio</i>");
    m_host->searchField().setText("<u>");
    QCOMPARE(m_host->emptyText(), "No recording has the keyword “<u>”.");
    m_host->window()->grab();
}

void tst_QWVeskBrowser::reloadReadsTheListsAnew()
{
    QVERIFY(m_host->openWith(BrowserHost::takes(1)));
    m_host->announce("Vesk on Studio", BrowserHost::takes(2));
    BrowserHost::type(Qt::Key_R, Qt::ControlModifier);
    QVERIFY(m_host->resolve("Vesk on Studio", "Studio"));
    QTRY_COMPARE(m_host->titles().size(), 2);
    QTest::mouseClick(&m_host->outlet<QToolButton>("reloadButton"), Qt::LeftButton);
    QCOMPARE(m_host->system.netServices.searches.size(), 3U);
    QCOMPARE(m_host->system.netServices.searching(), 1);
}

void tst_QWVeskBrowser::choosingBeforeTheReloadedListsAreThereSelects()
{
    QVERIFY(m_host->openWith(BrowserHost::takes(1)));
    m_host->announce("Vesk on Stage", BrowserHost::takes(2), 8);
    QVERIFY(m_host->resolve("Vesk on Stage", "Stage"));
    BrowserHost::type(Qt::Key_R, Qt::ControlModifier);
    QTRY_COMPARE(m_host->system.netServices.resolving().size(), 2);
    QCOMPARE(m_host->titles().size(), 1); // what was shown shows until it is there afresh
    m_host->outline().setFocus();
    BrowserHost::type(Qt::Key_Down);
    QCOMPARE(m_host->selectedDevice(), "Stage");
    QCOMPARE(m_host->window()->windowTitle(), "Recordings – Stage");
    QVERIFY(m_host->system.netServices.resolve("Vesk on Stage"));
    QTRY_COMPARE(m_host->titles().size(), 2);
    QCOMPARE(m_host->selectedDevice(), "Stage");
}

void tst_QWVeskBrowser::thousandPrintersAreNoRecorders()
{
    for (int printer = 0; printer < 1000; ++printer)
        m_host->system.netServices.announce("Printer " + QString::number(printer));
    QVERIFY(m_host->openWith(BrowserHost::takes(1)));
    QCOMPARE(m_host->devices(), QStringList{"Studio"});
}

void tst_QWVeskBrowser::hostsOwnInterfaceWithoutExtrasDoes()
{
    const QByteArray ui =
        R"(<ui version="4.0"><widget class="platform::Panel" name="window"><layout class="QVBoxLayout">
<item><widget class="QLineEdit" name="searchField"/></item><item><widget class="DeviceOutline" name="deviceTable"/></item>
<item><widget class="QWVeskBrowserRecordingsTable" name="recordingTable"/></item>
<item><widget class="QComboBox" name="formatPopup"/></item><item><widget class="QCheckBox" name="openAfterSaveButton"/></item>
<item><widget class="QPushButton" name="saveButton"/></item></layout>
<widget class="ProgressPanel" name="progressPanel"><layout class="QVBoxLayout"><item><widget class="QLabel" name="progressText"/>
</item><item><widget class="QProgressBar" name="progressBar"/></item></layout></widget></widget></ui>)";
    m_host->system.addHostResource("QWVeskBrowser.ui", ui);
    QVERIFY(m_host->openWith(BrowserHost::takes(1)));
    m_host->table().selectRows({0});
    QVERIFY(m_host->save());
    m_host->system.urlDownloads.fail("The disk is full.");
    QVERIFY(m_host->text("progressText").contains("The disk is full."));
    QWVeskBrowser::sharedInstance().closeProgress();
    QVERIFY(!m_host->sheet().isVisible());
}

void tst_QWVeskBrowser::withoutInterfaceNothingOpens()
{
    m_host->system.addHostResource("QWVeskBrowser.ui",
                                   "<ui version='4.0'><widget class='QWidget' name='window'/></ui>");
    for (int line = 0; line < 10; ++line)
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("Interface file \"QWVeskBrowser\""));
    QWVeskBrowser::openWindow();
    QVERIFY(!m_host->window());
    QCOMPARE(m_host->system.netServices.searching(), 0);
}

QW_TEST_MAIN(tst_QWVeskBrowser)
#include "tst_QWVeskBrowser.moc"

#include "BrowserHost.h"
#include "fakes/QWTestMain.h"

#include <QMenu>

#include <limits>

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
const QStringList defaultColumns{"title", "length", "fileSize", "channels", "quality"};
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
    void columnsAreAsWritten_data();
    void columnsAreAsWritten();
    void titleAlwaysShows();
    void cornerMenuIsInItsOrder();
    void cellsReadAsTheirFormattersSay();
    void searchShowsTakesWithTheKeyword();
    void searchKeepsTheSelectionAmongWhatShows();
    void refreshKeepsTextAndFocusOfTheSearch();
    void headerSortsAndReverses();
    void textsAreSortedAsPeopleReadThem();
    void sortKeepsTheSelection();
    void withoutARecorderEveryFormatIsOffered();
    void formatsAreThoseOfEverySelectedTake();
    void blueRecorderHasThreeFormats();
    void saveNeedsASelection();
    void lineTellsNumberAndSizeOfTheSelection();
    void columnsAndSortComeBack();
    void closingWritesTheDefaultsAtOnce();
    void garbageInTheDefaultsDoesNotHurt_data();
    void garbageInTheDefaultsDoesNotHurt();
    void saysWhatIsMissing();
    void saysThatTakesAreLoadedOrNobodyAnswers();
    void markupIsText();
    void reloadReadsTheListsAnew();
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

void tst_QWVeskBrowser::columnsAreAsWritten_data()
{
    QTest::addColumn<QString>("identifier");
    QTest::addColumn<QString>("header");
    QTest::addColumn<double>("width");
    QTest::newRow("title") << "title"
                           << "Title" << 158.0;
    QTest::newRow("length") << "length"
                            << "Length" << 62.0;
    QTest::newRow("size") << "fileSize"
                          << "Size" << 62.0;
    QTest::newRow("channels") << "channels"
                              << "Channels" << 62.0;
    QTest::newRow("quality") << "quality"
                             << "Quality" << 72.0;
    QTest::newRow("created") << "creationDate"
                             << "Created" << 0.0;
    QTest::newRow("modified") << "modificationDate"
                              << "Modified" << 0.0;
    QTest::newRow("formats") << "formats"
                             << "Available Formats" << 0.0;
    QTest::newRow("locked") << "locked"
                            << "Locked" << 0.0;
}

void tst_QWVeskBrowser::columnsAreAsWritten()
{
    QFETCH(QString, identifier);
    QFETCH(double, width);
    QVERIFY(m_host->openWith(BrowserHost::takes(2)));
    const qsizetype place = m_host->columns().indexOf(identifier);
    QCOMPARE(place, width > 0 ? defaultColumns.indexOf(identifier) : -1);
    if (place >= 0)
        QCOMPARE(m_host->table().tableColumns().at(place).width, width);
    const QWTableColumn column = m_host->table().tableColumnForIdentifierWidth(identifier, 33);
    QCOMPARE(column.identifier, identifier);
    QTEST(column.title, "header");
    QCOMPARE(column.width, 33.0);
    QCOMPARE(m_host->table().font().pointSize(), 11);
    QCOMPARE(m_host->table().horizontalHeader()->font().pointSize(), 11);
}

void tst_QWVeskBrowser::titleAlwaysShows()
{
    m_host->system.userDefaults().setObject("QWVeskBrowserRecordingTableColumns",
                                            QVariantList{QVariantMap{{"identifier", "locked"}, {"width", 50.0}}});
    QVERIFY(m_host->open());
    QCOMPARE(m_host->columns(), (QStringList{"title", "locked"}));
}

void tst_QWVeskBrowser::cornerMenuIsInItsOrder()
{
    QVERIFY(m_host->open());
    QMenu *const menu = m_host->outlet<QToolButton>("cornerButton").menu();
    Q_EMIT menu->aboutToShow();
    QStringList titles;
    const QList<QAction *> items = menu->actions();
    for (const QAction *const item : items)
        titles.append((item->isChecked() ? "+" : "-") + item->text());
    QCOMPARE(titles, (QStringList{"+File Size", "+Length", "-Created", "-Modified", "+Channels", "+Quality", "-Formats",
                                  "-Locked"}));
}

void tst_QWVeskBrowser::cellsReadAsTheirFormattersSay()
{
    QVariantMap entry = BrowserHost::take(1, {}, {"aac", "flac"});
    entry["length"] = 3765.0;
    entry["fileSize"] = 12400000;
    entry["channels"] = 6;
    entry["quality"] = 3;
    QVERIFY(m_host->openWith({entry}));
    for (const char *const identifier : {"creationDate", "modificationDate", "formats", "locked"})
        m_host->table().addTableColumn(m_host->table().tableColumnForIdentifierWidth(identifier, 90));
    QCOMPARE(m_host->cell(0, "length"), "1:02:45");
    QCOMPARE(m_host->cell(0, "fileSize"), QLocale().formattedDataSize(12400000, 1, QLocale::DataSizeSIFormat));
    QCOMPARE(m_host->cell(0, "channels"), "6");
    QCOMPARE(m_host->cell(0, "quality"), "unknown quality");
    QCOMPARE(m_host->cell(0, "formats"), "AIFF, WAVE, CAF, AAC, FLAC");
    QCOMPARE(m_host->cell(0, "locked"), "No");
    const QDateTime created(QDate(2009, 3, 5), QTime(16, 7), QTimeZone::utc());
    QCOMPARE(m_host->cell(0, "creationDate"), QLocale().toString(created.toLocalTime(), QLocale::ShortFormat));
}

void tst_QWVeskBrowser::searchShowsTakesWithTheKeyword()
{
    QVERIFY(m_host->openWith({BrowserHost::take(1, "BIRD wind"), BrowserHost::take(2, "bírd"),
                              BrowserHost::take(3, "train"), BrowserHost::take(4)}));
    m_host->searchField().setFocus();
    QTest::keyClicks(&m_host->searchField(), "bird");
    QCOMPARE(m_host->titles(), (QStringList{"Take 1", "Take 2"}));
    QTest::keyClick(&m_host->searchField(), Qt::Key_Escape);
    QCOMPARE(m_host->titles().size(), 4);
    QVERIFY(m_host->window()->isVisible());
}

void tst_QWVeskBrowser::searchKeepsTheSelectionAmongWhatShows()
{
    QVERIFY(m_host->openWith(
        {BrowserHost::take(1, "bird"), BrowserHost::take(2), BrowserHost::take(3, "bird"), BrowserHost::take(4)}));
    m_host->table().selectRows({1, 2});
    m_host->searchField().setText("bird");
    QCOMPARE(m_host->selectedTitles(), QStringList{"Take 3"});
    QVERIFY(m_host->saveButton().isEnabled());
    m_host->searchField().setText("birds");
    QVERIFY(!m_host->saveButton().isEnabled());
}

void tst_QWVeskBrowser::refreshKeepsTextAndFocusOfTheSearch()
{
    QVERIFY(m_host->openWith({BrowserHost::take(1, "bird"), BrowserHost::take(2)}));
    m_host->searchField().setFocus();
    QTest::keyClicks(&m_host->searchField(), "bi");
    for (int round = 0; round < 5; ++round) {
        m_host->announce("Vesk on Stage", {BrowserHost::take(8)}, 8);
        QVERIFY(m_host->resolve("Vesk on Stage", "Stage"));
        m_host->system.netServices.withdraw("Vesk on Stage");
        QTest::keyClick(&m_host->searchField(), round % 2 ? Qt::Key_R : Qt::Key_Backspace);
        QTest::keyClick(&m_host->searchField(), round % 2 ? Qt::Key_Backspace : Qt::Key_I);
    }
    QCOMPARE(m_host->searchField().text(), "bi");
    QVERIFY(m_host->searchField().hasFocus());
    QCOMPARE(m_host->titles(), QStringList{"Take 1"});
    QCOMPARE(m_host->selectedDevice(), "Studio");
}

void tst_QWVeskBrowser::headerSortsAndReverses()
{
    QVERIFY(m_host->openWith({BrowserHost::take(2), BrowserHost::take(3), BrowserHost::take(1)}));
    const QHeaderView &header = *m_host->table().horizontalHeader();
    QVERIFY(!header.isSortIndicatorShown());
    m_host->clickHeader("length");
    QCOMPARE(m_host->titles(), (QStringList{"Take 1", "Take 2", "Take 3"}));
    QCOMPARE(header.sortIndicatorSection(), m_host->section("length"));
    QCOMPARE(header.sortIndicatorOrder(), Qt::AscendingOrder);
    m_host->clickHeader("length");
    QCOMPARE(m_host->titles(), (QStringList{"Take 3", "Take 2", "Take 1"}));
    QCOMPARE(header.sortIndicatorOrder(), Qt::DescendingOrder);
    m_host->clickHeader("title");
    QCOMPARE(m_host->titles(), (QStringList{"Take 1", "Take 2", "Take 3"}));
    QCOMPARE(header.sortIndicatorSection(), m_host->section("title"));
}

void tst_QWVeskBrowser::textsAreSortedAsPeopleReadThem()
{
    QVERIFY(m_host->openWith({BrowserHost::take(10), BrowserHost::take(2)}));
    m_host->clickHeader("title");
    QCOMPARE(m_host->titles(), (QStringList{"Take 2", "Take 10"}));
}

void tst_QWVeskBrowser::sortKeepsTheSelection()
{
    QVERIFY(m_host->openWith(BrowserHost::takes(20)));
    m_host->table().selectRows({1, 2, 7});
    m_host->clickHeader("length");
    m_host->clickHeader("length");
    QCOMPARE(m_host->selectedTitles(), (QStringList{"Take 8", "Take 3", "Take 2"}));
    QVERIFY(m_host->saveButton().isEnabled());
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

void tst_QWVeskBrowser::columnsAndSortComeBack()
{
    QVERIFY(m_host->openWith({BrowserHost::take(2), BrowserHost::take(3), BrowserHost::take(1)}));
    m_host->table().removeTableColumn("quality");
    m_host->table().addTableColumn(m_host->table().tableColumnForIdentifierWidth("locked", 50));
    m_host->clickHeader("length");
    m_host->clickHeader("length");
    m_host->window()->close();
    m_host->system.releaseShared(); // as in the next run

    QVERIFY(m_host->open());
    QCOMPARE(m_host->columns(), (QStringList{"title", "length", "fileSize", "channels", "locked"}));
    QVERIFY(m_host->resolve("Vesk on Studio", "Studio"));
    QCOMPARE(m_host->titles(), (QStringList{"Take 3", "Take 2", "Take 1"}));
    QCOMPARE(m_host->table().horizontalHeader()->sortIndicatorOrder(), Qt::DescendingOrder);
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

void tst_QWVeskBrowser::garbageInTheDefaultsDoesNotHurt_data()
{
    QTest::addColumn<QVariant>("columns");
    QTest::addColumn<QVariant>("sort");
    const auto column = [](const QVariant &identifier, const QVariant &width) {
        return QVariantMap{{"identifier", identifier}, {"width", width}};
    };
    QTest::newRow("numbers") << QVariant(7) << QVariant(7);
    QTest::newRow("texts") << QVariant("title") << QVariant("length");
    QTest::newRow("noise") << QVariant(QByteArray("\0\xff\1", 3)) << QVariant(QByteArray("\0\xff\1", 3));
    QTest::newRow("lists") << QVariant(QVariantList{1, "title", QVariantList{2}}) << QVariant(QVariantList{1});
    QTest::newRow("a sort that is a list") << QVariant() << QVariant(platform::PropertyList::toXml(QVariantList{"a"}));
    QTest::newRow("a sort by nothing that there is")
        << QVariant() << QVariant(platform::PropertyList::toXml(QVariantMap{{"key", "colour"}, {"ascending", true}}));
    QTest::newRow("columns doubled, unknown and absurd")
        << QVariant(QVariantList{column("title", 1e300), column("title", 5), column("colour", 5),
                                 column("length", -std::numeric_limits<double>::infinity()), column(5, 5),
                                 column("fileSize", "wide"), column("channels", "none"), column("quality", 0)})
        << QVariant();
}

void tst_QWVeskBrowser::garbageInTheDefaultsDoesNotHurt()
{
    QFETCH(QVariant, columns);
    QFETCH(QVariant, sort);
    if (columns.isValid())
        m_host->system.userDefaults().setObject("QWVeskBrowserRecordingTableColumns", columns);
    if (sort.isValid())
        m_host->system.userDefaults().setObject("QWVeskBrowserSortDescriptor", sort);
    QVERIFY(m_host->openWith({BrowserHost::take(2), BrowserHost::take(1)}));
    QCOMPARE(m_host->columns(), defaultColumns);
    QCOMPARE(m_host->titles(), (QStringList{"Take 2", "Take 1"}));
    QVERIFY(m_host->table().columnWidth(m_host->section("length")) > 10);
    m_host->window()->close();
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

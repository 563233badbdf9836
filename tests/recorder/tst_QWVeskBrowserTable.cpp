#include "BrowserHost.h"
#include "fakes/QWTestMain.h"

#include <QMenu>
#include <QSignalSpy>

#include <limits>

namespace
{
const QStringList defaultColumns{"title", "length", "fileSize", "channels", "quality"};
} // namespace

/// The table of recordings in the window: its columns, their texts, search and sort.
class tst_QWVeskBrowserTable : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_host = std::make_unique<BrowserHost>(); }
    void cleanup() { m_host.reset(); }

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
    void controlsFollowASearchOnce();
    void titlesOfMegabytesDoNotHoldUpTheWindow();
    void columnsAndSortComeBack();
    void garbageInTheDefaultsDoesNotHurt_data();
    void garbageInTheDefaultsDoesNotHurt();

private:
    std::unique_ptr<BrowserHost> m_host;
};

void tst_QWVeskBrowserTable::columnsAreAsWritten_data()
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

void tst_QWVeskBrowserTable::columnsAreAsWritten()
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

void tst_QWVeskBrowserTable::titleAlwaysShows()
{
    m_host->system.userDefaults().setObject("QWVeskBrowserRecordingTableColumns",
                                            QVariantList{QVariantMap{{"identifier", "locked"}, {"width", 50.0}}});
    QVERIFY(m_host->open());
    QCOMPARE(m_host->columns(), (QStringList{"title", "locked"}));
}

void tst_QWVeskBrowserTable::cornerMenuIsInItsOrder()
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

void tst_QWVeskBrowserTable::cellsReadAsTheirFormattersSay()
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

void tst_QWVeskBrowserTable::searchShowsTakesWithTheKeyword()
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

void tst_QWVeskBrowserTable::searchKeepsTheSelectionAmongWhatShows()
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

void tst_QWVeskBrowserTable::refreshKeepsTextAndFocusOfTheSearch()
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

void tst_QWVeskBrowserTable::headerSortsAndReverses()
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

void tst_QWVeskBrowserTable::textsAreSortedAsPeopleReadThem()
{
    QVERIFY(m_host->openWith({BrowserHost::take(10), BrowserHost::take(2)}));
    m_host->clickHeader("title");
    QCOMPARE(m_host->titles(), (QStringList{"Take 2", "Take 10"}));
}

void tst_QWVeskBrowserTable::sortKeepsTheSelection()
{
    QVERIFY(m_host->openWith(BrowserHost::takes(20)));
    m_host->table().selectRows({1, 2, 7});
    m_host->clickHeader("length");
    m_host->clickHeader("length");
    QCOMPARE(m_host->selectedTitles(), (QStringList{"Take 8", "Take 3", "Take 2"}));
    QVERIFY(m_host->saveButton().isEnabled());
}

void tst_QWVeskBrowserTable::controlsFollowASearchOnce()
{
    QVERIFY(m_host->openWith({BrowserHost::take(1, "bird"), BrowserHost::take(2, "bird"), BrowserHost::take(3)}));
    m_host->table().selectRows({1, 2});
    const QSignalSpy fillings(m_host->formats().model(), &QAbstractItemModel::rowsRemoved);
    m_host->searchField().setText("bird");
    QCOMPARE(m_host->selectedTitles(), QStringList{"Take 2"});
    QCOMPARE(fillings.count(), 1);
}

/// The text that is laid out is a small part of it: of all, one cell would take seconds.
void tst_QWVeskBrowserTable::titlesOfMegabytesDoNotHoldUpTheWindow()
{
    QVariantMap entry = BrowserHost::take(1);
    entry["title"] = QString("ab ").repeated(1'000'000);
    QVERIFY(m_host->openWith({entry}));
    QCOMPARE(m_host->cell(0, "title").size(), 3'000'000);
    QVERIFY(m_host->table().sizeHintForIndex(m_host->table().model()->index(0, 0)).width() < 100'000);
    m_host->window()->grab();
}

void tst_QWVeskBrowserTable::columnsAndSortComeBack()
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

void tst_QWVeskBrowserTable::garbageInTheDefaultsDoesNotHurt_data()
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

void tst_QWVeskBrowserTable::garbageInTheDefaultsDoesNotHurt()
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

QW_TEST_MAIN(tst_QWVeskBrowserTable)
#include "tst_QWVeskBrowserTable.moc"

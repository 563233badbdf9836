#include "RecorderTools.h"

#include <QWUtilities/recorder/browse/DisplayedRecordings.h>
#include <QWUtilities/recorder/browse/FormatMenu.h>

#include <QTest>

#include <cmath>
#include <limits>
#include <numeric>

using namespace recordertest;
using namespace qw;

namespace
{
QVariantMap take(const QString &title, const QString &key, const QVariant &value)
{
    QVariantMap entry{{"title", title}};
    if (value.isValid())
        entry.insert(key, value);
    return entry;
}

QStringList titlesOf(const DisplayedRecordings &rows)
{
    QStringList titles;
    for (int row = 0; row < rows.rowCount(); ++row)
        titles.append(rows.recording(row)->title());
    return titles;
}

const QStringList compressed{"AAC", "Podcast", "Apple Lossless", "FLAC", "Ogg Vorbis"};
const QStringList uncompressed{"AIFF", "WAVE", "CAF"};
const QStringList metadata{"", "Metadata as XML", "Metadata as Text"};
} // namespace

class tst_DisplayedRecordings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_system = std::make_unique<FakeSystem>();
        m_scope = std::make_unique<platform::SystemScope>(*m_system);
    }

    void cleanup()
    {
        m_scope.reset();
        m_system.reset();
    }

    void withoutARecorderThereAreNoRows()
    {
        DisplayedRecordings rows;
        rows.setSortDescriptor(SortDescriptor{"title"});
        rows.setSearchText("bird");
        rows.refreshRecordings(nullptr);
        QCOMPARE(rows.rowCount(), 0);
        QVERIFY(rows.recordings({0, 5, -1}).empty());
    }

    void cellsAreTheValuesOfTheirKeys()
    {
        DisplayedRecordings rows;
        rows.refreshRecordings(
            recorder({QVariantMap{{"title", "One"}, {"length", 2.5}, {"channels", 2}, {"locked", true}}}));
        const auto cell = [&](const char *key) { return rows.index(0, DisplayedRecordings::columnOf(key)).data(); };
        QCOMPARE(cell("title"), QVariant("One"));
        QCOMPARE(cell("length"), QVariant(2.5));
        QCOMPARE(cell("channels"), QVariant(2U));
        QCOMPARE(cell("locked"), QVariant(true));
        QVERIFY(!cell("creationDate").isValid());
        QVERIFY(!cell("formats").isValid());
        QCOMPARE(DisplayedRecordings::columnOf("keywords"), -1);
    }

    void searchLooksInKeywordsForAnyCaseAndDiacritics_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QStringList>("found");
        QTest::newRow("bird") << "bird" << QStringList{"1", "2", "3"};
        QTest::newRow("accent sought") << "BÏRD" << QStringList{"1", "2", "3"};
        QTest::newRow("decomposed") << QString("bi\u0308rd") << QStringList{"1", "2", "3"};
        QTest::newRow("inside a word") << "ir" << QStringList{"1", "2", "3"};
        QTest::newRow("blank counts") << "d d" << QStringList{"1"};
        QTest::newRow("titles do not") << "Song" << QStringList{};
        QTest::newRow("not across takes") << "birdb" << QStringList{};
        QTest::newRow("sharp s") << "STRASSE" << QStringList{"4"};
        QTest::newRow("other scripts") << "ЁЛКА" << QStringList{"4"};
        QTest::newRow("beyond the first plane") << QStringLiteral("\U0001F399") << QStringList{"4"};
        QTest::newRow("a mark alone") << QString(u'\u0308') << QStringList{};
        QTest::newRow("nothing") << "" << QStringList{"1", "2", "3", "4", "5", "6"};
    }

    void searchLooksInKeywordsForAnyCaseAndDiacritics()
    {
        QFETCH(const QString, text);
        DisplayedRecordings rows;
        rows.refreshRecordings(
            recorder({take("1", "keywords", "BIRD dawn"), take("2", "keywords", "a Bird"),
                      take("3", "keywords", "bírd"), take("4", "keywords", QStringLiteral("Straße елка \U0001F399")),
                      take("5", "keywords", ""), take("6", "keywords", QVariant())}));
        rows.setSearchText(text);
        QTEST(titlesOf(rows), "found");
    }

    void aSearchIsKeptOverRefreshes()
    {
        DisplayedRecordings rows;
        const auto device = recorder({take("1", "keywords", "bird"), take("2", "keywords", "dog")});
        rows.setSearchText("dog");
        rows.refreshRecordings(device);
        QCOMPARE(titlesOf(rows), QStringList{"2"});
        rows.refreshRecordings(nullptr);
        rows.refreshRecordings(device);
        QCOMPARE(titlesOf(rows), QStringList{"2"});
    }

    void titlesSortAsPeopleReadThem()
    {
        DisplayedRecordings rows;
        rows.refreshRecordings(
            recorder({take("Take 10", "", {}), take("take 2", "", {}), take("Élan", "", {}), take("Zoo", "", {}),
                      take("", "", {}), QVariantMap(), take("Take 1", "", {}), take("elan 2", "", {})}));
        rows.setSortDescriptor(SortDescriptor{"title"});
        QCOMPARE(titlesOf(rows), QStringList({QString(), "", "Élan", "elan 2", "Take 1", "take 2", "Take 10", "Zoo"}));
        QVERIFY(rows.recording(0)->title().isNull()); // the missing one before the empty one
    }

    void longTitlesThatDifferAtTheirEndsAreTold()
    {
        DisplayedRecordings rows;
        const QString longTitle(1000, u'x');
        rows.refreshRecordings(recorder({take(longTitle + "b", "", {}), take(longTitle + "a", "", {}),
                                         take(longTitle, "", {}), take("<b>" + longTitle, "", {})}));
        rows.setSortDescriptor(SortDescriptor{"title"});
        QCOMPARE(titlesOf(rows), QStringList({"<b>" + longTitle, longTitle, longTitle + "a", longTitle + "b"}));
    }

    void valuesSortWithMissingOnesFirst_data()
    {
        QTest::addColumn<QString>("key");
        QTest::addColumn<QVariantList>("values"); // of takes "0", "1", …
        QTest::addColumn<QString>("ascending");
        QTest::addColumn<QString>("descending");
        const double infinity = std::numeric_limits<double>::infinity();
        const auto date = [](int day) { return QDateTime(QDate(2009, 3, day), QTime(16, 7), Qt::UTC); };
        const QDateTime old(QDate(1950, 1, 1), QTime(0, 0), Qt::UTC);
        QTest::newRow("length") << "length" << QVariantList{3.0, std::nan(""), infinity, -1.0, 3.0, -infinity, 0.0}
                                << "1536042"
                                << "2046351";
        QTest::newRow("size") << "fileSize" << QVariantList{5LL, 18446744073709551615ULL, 0LL, 5LL, QVariant()}
                              << "24031"
                              << "10324";
        QTest::newRow("channels") << "channels" << QVariantList{2LL, 1LL, 6LL, 2LL} << "1032"
                                  << "2031";
        QTest::newRow("quality") << "quality" << QVariantList{2LL, 0LL, 1LL} << "120"
                                 << "021";
        QTest::newRow("created") << "creationDate" << QVariantList{date(2), QVariant(), date(1), date(2), old}
                                 << "14203"
                                 << "03241";
        QTest::newRow("modified") << "modificationDate" << QVariantList{date(2), date(1), QVariant()} << "210"
                                  << "012";
        QTest::newRow("formats as shown") << "formats" << QVariantList{QVariantList{"vorbis"},
                                                                       QVariantList{"aac", "flac"},
                                                                       QVariant(),
                                                                       QVariantList{},
                                                                       QVariantList{"flac", "aac"},
                                                                       QVariantList{"appleLossless"},
                                                                       QVariantList{"podcast"},
                                                                       "aac"}
                                          << "27314506"
                                          << "60514327";
        QTest::newRow("locked") << "locked" << QVariantList{true, false, true, QVariant()} << "1302"
                                << "0213";
        QTest::newRow("no column") << "filename" << QVariantList{"b", "a"} << "01"
                                   << "01";
        QTest::newRow("unknown") << "bogus" << QVariantList{2, 1} << "01"
                                 << "01";
    }

    void valuesSortWithMissingOnesFirst()
    {
        QFETCH(const QString, key);
        QFETCH(const QVariantList, values);
        QVariantList entries;
        for (const QVariant &value : values)
            entries.append(take(QString::number(entries.size()), key, value));
        DisplayedRecordings rows;
        rows.refreshRecordings(recorder(entries));
        rows.setSortDescriptor(SortDescriptor{key, true});
        QTEST(titlesOf(rows).join(""), "ascending");
        rows.setSortDescriptor(SortDescriptor{key, false});
        QTEST(titlesOf(rows).join(""), "descending");
        rows.setSortDescriptor(std::nullopt);
        QCOMPARE(titlesOf(rows).front(), "0");
    }

    void equalTakesKeepTheRecordersOrderBothWays()
    {
        QVariantList entries;
        for (int i = 0; i < 500; ++i)
            entries.append(QVariantMap{{"title", "Same"}, {"filename", QString::number(i)}, {"channels", i % 2}});
        DisplayedRecordings rows;
        rows.refreshRecordings(recorder(entries));
        for (const char *key : {"title", "channels", "length"})
            for (const bool ascending : {true, false}) {
                rows.setSortDescriptor(SortDescriptor{key, ascending});
                for (int row = 1; row < rows.rowCount(); ++row)
                    if (rows.recording(row)->channels() == rows.recording(row - 1)->channels())
                        QVERIFY(rows.recording(row)->filename().toInt() > rows.recording(row - 1)->filename().toInt());
            }
    }

    void headerClicksSortAscendingThenReversed()
    {
        DisplayedRecordings rows;
        QCOMPARE(rows.sortAfterClick("length"), (SortDescriptor{"length", true}));
        rows.setSortDescriptor(rows.sortAfterClick("length"));
        QCOMPARE(rows.sortAfterClick("length"), (SortDescriptor{"length", false}));
        rows.setSortDescriptor(rows.sortAfterClick("length"));
        QCOMPARE(rows.sortAfterClick("length"), (SortDescriptor{"length", true}));
        QCOMPARE(rows.sortAfterClick("title"), (SortDescriptor{"title", true}));
    }

    void notedRowsAreFoundAgain()
    {
        DisplayedRecordings rows;
        const auto device = recorder({take("3", "keywords", "bird"), take("1", "keywords", "dog"),
                                      take("2", "keywords", "bird"), take("4", "keywords", "bird")});
        rows.refreshRecordings(device);
        const auto noted = rows.notedRows({0, 1, 2, 99});
        rows.setSortDescriptor(SortDescriptor{"title"});
        QCOMPARE(rows.rowsOf(noted), (std::vector{0, 1, 2}));
        rows.setSearchText("bird"); // "2", "3", "4"
        QCOMPARE(rows.rowsOf(noted), (std::vector{0, 1}));
        rows.setSortDescriptor(SortDescriptor{"title", false});
        QCOMPARE(rows.rowsOf(noted), (std::vector{1, 2}));
        rows.refreshRecordings(recorder({take("3", "", {})}));
        QVERIFY(rows.rowsOf(noted).empty());
    }

    void selectedTakesComeInTheOrderAsked()
    {
        DisplayedRecordings rows;
        rows.refreshRecordings(recorder({take("b", "", {}), take("a", "", {})}));
        rows.setSortDescriptor(SortDescriptor{"title"});
        const auto takes = rows.recordings({0, 1, 7});
        QCOMPARE(takes.size(), size_t(2));
        QCOMPARE(takes.front()->title(), "a");
    }

    void rowsOutliveTheirRecordersLeaving()
    {
        DisplayedRecordings rows;
        rows.refreshRecordings(recorder({take("One", "", {})}));
        QCOMPARE(rows.recording(0)->device()->name(), "Studio");
        rows.setSearchText("x");
        rows.setSearchText("");
        QCOMPARE(titlesOf(rows), QStringList{"One"});
        rows.refreshRecordings(nullptr);
        QCOMPARE(rows.rowCount(), 0);
    }

    void theSortIsArchivedAndGarbageIsIgnored()
    {
        for (const SortDescriptor &sort : {SortDescriptor{"length", false}, SortDescriptor{"title", true}})
            QCOMPARE(SortDescriptor::unarchived(sort.archived()), sort);
        const QByteArray whole = SortDescriptor{"length", false}.archived();
        for (qsizetype size = 0; size < whole.trimmed().size(); ++size)
            QVERIFY(!SortDescriptor::unarchived(whole.left(size)));
        using platform::PropertyList::toXml;
        for (const QVariant &other : {QVariant("title"), QVariant(QVariantMap{{"key", "title"}}),
                                      QVariant(QVariantMap{{"key", 1}, {"ascending", true}}),
                                      QVariant(QVariantMap{{"key", "title"}, {"ascending", "yes"}})})
            QVERIFY(!SortDescriptor::unarchived(toXml(other)));
    }

    void theFormatMenuOffersWhatEveryTakeHas_data()
    {
        QTest::addColumn<QVariantList>("formats"); // of the takes that are selected
        QTest::addColumn<bool>("isBlue");
        QTest::addColumn<QString>("current");
        QTest::addColumn<QStringList>("titles");
        QTest::addColumn<QString>("selected");
        const QVariantList none;
        QTest::newRow("nothing selected") << none << false << "" << uncompressed + compressed + metadata << "AIFF";
        QTest::newRow("blue") << none << true << "FLAC" << uncompressed << "AIFF";
        QTest::newRow("blue with a take that has all")
            << QVariantList{QVariantList{"aac", "flac"}} << true << "CAF" << uncompressed << "CAF";
        QTest::newRow("two takes") << QVariantList{QVariantList{"aac", "flac"}, QVariantList{"flac"}} << false << "AAC"
                                   << uncompressed + QStringList{"FLAC"} + metadata << "AIFF";
        QTest::newRow("kept") << QVariantList{QVariantList{"aac", "flac"}} << false << "FLAC"
                              << uncompressed + QStringList{"AAC", "FLAC"} + metadata << "FLAC";
        QTest::newRow("metadata kept") << QVariantList{none} << false << "Metadata as Text" << uncompressed + metadata
                                       << "Metadata as Text";
        QTest::newRow("without a list") << QVariantList{QVariant()} << false << "WAVE" << uncompressed + metadata
                                        << "WAVE";
    }

    void theFormatMenuOffersWhatEveryTakeHas()
    {
        QFETCH(const QVariantList, formats);
        QFETCH(const bool, isBlue);
        QFETCH(const QString, current);
        QVariantList entries;
        for (const QVariant &codes : formats)
            entries.append(take("Take", "formats", codes));
        const auto device = recorder(entries);
        const FormatMenu menu = FormatMenu::forSelection(device->recordings(), isBlue, current);
        QTEST(menu.titles, "titles");
        QTEST(menu.selectedTitle(), "selected");
    }

private:
    std::shared_ptr<QWVeskDevice> recorder(const QVariantList &entries)
    {
        return loadedDevice(*m_system, m_browser, entries);
    }

    std::unique_ptr<FakeSystem> m_system;
    std::unique_ptr<platform::SystemScope> m_scope;
    NotingBrowser m_browser;
};

QTEST_GUILESS_MAIN(tst_DisplayedRecordings)
#include "tst_DisplayedRecordings.moc"

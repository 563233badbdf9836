#include <QWUtilities/recorder/model/RecordingListReader.h>

#include <QWPlatform/foundation/PropertyList.h>

#include <plist/plist.h>

#include <QTest>

#include <cmath>
#include <cstdlib>
#include <limits>
#include <random>

using namespace qw;
using platform::PropertyList::fromData;
using platform::PropertyList::toXml;

namespace
{
QVariantMap fullEntry()
{
    return {{"title", "Take <1> & “so”"},
            {"filename", "take-1"},
            {"creationDate", QDateTime(QDate(2009, 3, 5), QTime(16, 7), Qt::UTC)},
            {"modificationDate", QDateTime(QDate(2009, 3, 6), QTime(8, 0, 1), Qt::UTC)},
            {"fileSize", 12400000LL},
            {"length", 187.25},
            {"channels", 2LL},
            {"quality", 1LL},
            {"formats", QVariantList{"aac", "flac"}},
            {"locked", true},
            {"keywords", "bird dawn"}};
}

bool isArray(const QByteArray &data)
{
    return fromData(data).value_or(QVariant()).typeId() == QMetaType::QVariantList;
}

RecordingState only(const QByteArray &list)
{
    const auto states = RecordingListReader::read(list);
    if (states && states->size() == 1)
        return states->front();
    RecordingState none;
    none.title = "not one";
    return none;
}

/// Compares what both ways of reading tell, "not a number" being equal to itself.
bool tellTheSame(const RecordingState &one, const RecordingState &other)
{
    const bool sameLength = one.length == other.length || (std::isnan(one.length) && std::isnan(other.length));
    return sameLength && one.title == other.title && one.title.isNull() == other.title.isNull() &&
           one.filename == other.filename && one.creationDate == other.creationDate &&
           one.modificationDate == other.modificationDate && one.fileSize == other.fileSize &&
           one.channels == other.channels && one.quality == other.quality && one.formats == other.formats &&
           one.locked == other.locked && one.keywords == other.keywords;
}

/// As the reader of all lists reads it, without regard to speed.
std::optional<std::vector<RecordingState>> plainlyRead(const QByteArray &data)
{
    const QVariant list = fromData(data).value_or(QVariant());
    if (list.typeId() != QMetaType::QVariantList)
        return std::nullopt;
    std::vector<RecordingState> states;
    for (const QVariant &entry : list.toList())
        if (entry.typeId() == QMetaType::QVariantMap)
            states.push_back(RecordingListReader::stateOf(entry.toMap()));
    return states;
}

bool agrees(const QByteArray &data)
{
    const auto quick = RecordingListReader::read(data);
    const auto plain = plainlyRead(data);
    return quick.has_value() == plain.has_value() &&
           (!quick || std::equal(quick->begin(), quick->end(), plain->begin(), plain->end(), tellTheSame));
}

QByteArray asBinary(const QByteArray &xml)
{
    plist_t list = nullptr;
    plist_from_xml(xml.constData(), static_cast<uint32_t>(xml.size()), &list);
    char *bytes = nullptr;
    uint32_t size = 0;
    plist_to_bin(list, &bytes, &size);
    const QByteArray binary(bytes, static_cast<qsizetype>(size));
    plist_free(list);
    std::free(bytes);
    return binary;
}

QByteArray wrapped(const QByteArray &entries)
{
    return "<plist><array>" + entries + "</array></plist>";
}

/// A list with something of everything, in forms that others write.
QByteArray motleyList()
{
    return "<?xml version=\"1.0\"?><!DOCTYPE plist PUBLIC \"x\" \"y\"><plist version=\"1.0\">\n<array><dict>"
           "<key>title</key><string>A &amp; <![CDATA[<b>]]></string><key>filename</key><string/>"
           "<key>fileSize</key><integer>0x10</integer><key>length</key><real>nan</real>"
           "<key>formats</key><array><string>aac</string><integer>3</integer><string>v&#111;rbis</string></array>"
           "<key>extra</key><dict><key>a</key><array><data>AAAA</data></array></dict>"
           "<key>creationDate</key><date>2009-03-05T16:07:00Z</date><key>locked</key><true/></dict>"
           "<!-- none --><string>passed over</string><dict/><array><dict/></array>"
           "<dict><key>title</key><string>twice</string><key>title</key><integer>1</integer></dict></array></plist>\n";
}
} // namespace

class tst_RecordingListReader : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyKeyFillsItsField_data()
    {
        QTest::addColumn<QByteArray>("list");
        const QByteArray xml = toXml(QVariantList{fullEntry()});
        QTest::newRow("XML") << xml;
        QTest::newRow("binary") << asBinary(xml);
    }

    void everyKeyFillsItsField()
    {
        QFETCH(const QByteArray, list);
        const RecordingState state = only(list);
        QCOMPARE(state.title, "Take <1> & “so”");
        QCOMPARE(state.filename, "take-1");
        QCOMPARE(state.creationDate, QDateTime(QDate(2009, 3, 5), QTime(16, 7), Qt::UTC));
        QCOMPARE(state.modificationDate, QDateTime(QDate(2009, 3, 6), QTime(8, 0, 1), Qt::UTC));
        QCOMPARE(state.fileSize, 12400000ULL);
        QCOMPARE(state.length, 187.25);
        QCOMPARE(state.channels, 2U);
        QCOMPARE(state.quality, 1U);
        QCOMPARE(state.formats, QStringList({"aac", "flac"}));
        QVERIFY(state.locked);
        QCOMPARE(state.keywords, "bird dawn");
    }

    void missingKeysAreEmpty()
    {
        const RecordingState state = only(wrapped("<dict/>"));
        QVERIFY(state.title.isNull() && state.filename.isNull() && state.keywords.isNull());
        QVERIFY(!state.creationDate.isValid() && !state.modificationDate.isValid());
        QVERIFY(!state.formats && !state.locked);
        QVERIFY(state.fileSize == 0 && state.length == 0 && state.channels == 0 && state.quality == 0);
    }

    void anEmptyTextIsNoMissingOne()
    {
        const RecordingState state = only(wrapped("<dict><key>title</key><string></string><key>keywords</key>"
                                                  "<string/></dict>"));
        QVERIFY(!state.title.isNull() && state.title.isEmpty());
        QVERIFY(!state.keywords.isNull());
    }

    void aKeyOfEachWrongTypeIsEmpty_data()
    {
        QTest::addColumn<QVariant>("value");
        QTest::newRow("text") << QVariant("12");
        QTest::newRow("date") << QVariant(QDateTime(QDate(2009, 3, 5), QTime(16, 7), Qt::UTC));
        QTest::newRow("integer") << QVariant(1LL);
        QTest::newRow("real") << QVariant(1.5);
        QTest::newRow("truth") << QVariant(true);
        QTest::newRow("list") << QVariant(QVariantList{"aac"});
        QTest::newRow("dictionary") << QVariant(QVariantMap{{"a", 1LL}});
        QTest::newRow("data") << QVariant(QByteArray("aac"));
    }

    void aKeyOfEachWrongTypeIsEmpty()
    {
        QFETCH(const QVariant, value);
        QVariantMap entry = fullEntry();
        for (QVariant &field : entry)
            field = value;
        const bool isText = value.typeId() == QMetaType::QString;
        const bool isDate = value.typeId() == QMetaType::QDateTime;
        const bool isNumber =
            value.canConvert<double>() && !isText && !isDate && value.typeId() != QMetaType::QByteArray;
        const RecordingState state = only(toXml(QVariantList{entry}));
        QCOMPARE(state.title.isNull(), !isText);
        QCOMPARE(state.filename.isNull(), !isText);
        QCOMPARE(state.keywords.isNull(), !isText);
        QCOMPARE(state.creationDate.isValid(), isDate);
        QCOMPARE(state.modificationDate.isValid(), isDate);
        QCOMPARE(state.fileSize, isNumber ? 1ULL : 0ULL);
        QCOMPARE(state.length > 0, isNumber);
        QCOMPARE(state.channels, isNumber ? 1U : 0U);
        QCOMPARE(state.quality, isNumber ? 1U : 0U);
        QCOMPARE(state.formats.has_value(), value.typeId() == QMetaType::QVariantList);
        QCOMPARE(state.locked, isNumber);
    }

    void numbersBeyondAFieldAreNothing_data()
    {
        QTest::addColumn<QVariant>("number");
        QTest::newRow("negative") << QVariant(-1LL);
        QTest::newRow("beyond 32 bits") << QVariant(4294967296LL);
        QTest::newRow("nan") << QVariant(std::nan(""));
        QTest::newRow("infinite") << QVariant(-std::numeric_limits<double>::infinity());
    }

    void numbersBeyondAFieldAreNothing()
    {
        QFETCH(const QVariant, number);
        const QByteArray list =
            toXml(QVariantList{QVariantMap{{"channels", number}, {"quality", number}, {"length", number}}});
        const RecordingState state = only(list);
        QCOMPARE(state.channels, 0U);
        if (number.typeId() == QMetaType::LongLong)
            QVERIFY(state.quality > 2);
        QVERIFY(state.length == number.toDouble() || std::isnan(number.toDouble()));
    }

    void theLargestSizeIsKept()
    {
        const auto largest = std::numeric_limits<qulonglong>::max();
        QCOMPARE(only(toXml(QVariantList{QVariantMap{{"fileSize", largest}}})).fileSize, largest);
        QCOMPARE(only(toXml(QVariantList{QVariantMap{{"fileSize", -1LL}}})).fileSize, 0ULL);
    }

    void entriesThatAreNoDictionaryArePassedOver()
    {
        const QByteArray list =
            toXml(QVariantList{"text", 7LL, QVariantMap{{"title", "kept"}}, QVariantList{fullEntry()}});
        QCOMPARE(only(list).title, "kept");
        QCOMPARE(only(asBinary(list)).title, "kept");
    }

    void whatIsNoArrayDoesNotLoad_data()
    {
        QTest::addColumn<QByteArray>("data");
        QTest::newRow("nothing") << QByteArray();
        QTest::newRow("garbage") << QByteArray("\x01\x02garbage\xFF");
        QTest::newRow("page") << QByteArray("<html><body>404</body></html>");
        QTest::newRow("dictionary") << toXml(QVariantMap{{"list", QVariantList{fullEntry()}}});
        QTest::newRow("text") << toXml("text");
        QTest::newRow("binary dictionary") << asBinary(toXml(fullEntry()));
        QTest::newRow("end of another") << QByteArray("<plist><array></dict></plist>");
        QTest::newRow("two") << QByteArray("<plist><array/><array/></plist>");
        QTest::newRow("key without value") << wrapped("<dict><key>title</key></dict>");
        QTest::newRow("value without key") << wrapped("<dict><string>title</string></dict>");
        QTest::newRow("bad date of no key of ours") << wrapped("<dict><key>x</key><date>today</date></dict>");
        QTest::newRow("bad number in an entry passed over") << wrapped("<integer>1x</integer>");
        QTest::newRow("not UTF-8") << wrapped("<dict><key>title</key><string>\xFF</string></dict>");
        QTest::newRow("entity bomb") << QByteArray("<!DOCTYPE plist [<!ENTITY a \"aaaa\">]>") + wrapped("<dict/>");
        QTest::newRow("deep") << wrapped(QByteArray("<array>").repeated(100000));
    }

    void whatIsNoArrayDoesNotLoad()
    {
        QFETCH(const QByteArray, data);
        QVERIFY(!RecordingListReader::read(data));
        QVERIFY(!isArray(data));
    }

    void arraysInOtherFormsLoad_data()
    {
        QTest::addColumn<QByteArray>("data");
        QTest::newRow("old text") << QByteArray("( { title = one; } )");
        QTest::newRow("byte-order mark") << "\xEF\xBB\xBF" +
                                                wrapped("<dict><key>title</key><string>one</string></dict>");
        QTest::newRow("blanks first") << "\r\n " + wrapped("<dict><key>title</key><string>one</string></dict>");
    }

    void arraysInOtherFormsLoad()
    {
        QFETCH(const QByteArray, data);
        QCOMPARE(only(data).title, "one");
    }

    void anEmptyArrayLoads()
    {
        for (const QByteArray &data : {QByteArray("<plist><array/></plist>"), wrapped(" \n"), QByteArray("()")}) {
            const auto states = RecordingListReader::read(data);
            QVERIFY(states && states->empty());
        }
    }

    void aListCutAnywhereDoesNotLoad()
    {
        for (const QByteArray &whole : {motleyList().trimmed(), asBinary(motleyList())}) {
            QVERIFY(RecordingListReader::read(whole));
            for (qsizetype size = 0; size < whole.size(); ++size)
                QVERIFY2(!RecordingListReader::read(whole.left(size)), qPrintable(QString::number(size)));
        }
    }

    void theLastOfDoubledKeysCounts()
    {
        QVERIFY(agrees(motleyList()));
        const auto states = RecordingListReader::read(motleyList());
        QCOMPARE(states->size(), size_t(3));
        QCOMPARE(states->front().title, "A & <b>");
        QCOMPARE(states->front().formats, QStringList({"aac", "vorbis"}));
        QVERIFY(states->back().title.isNull());
    }

    void agreesWithTheReaderOfAllListsOnMutants()
    {
        std::mt19937 random(11);
        const QByteArray whole = motleyList();
        const QByteArrayView pieces[] = {"<dict>",   "</dict>",   "<key>title</key>", "<array>", "</array>",
                                         "<string>", "</string>", "<true/>",          "&lt;",    "<integer>",
                                         "x",        "<",         "<![CDATA[",        "]]>"};
        int lists = 0;
        for (int round = 0; round < 20000; ++round) {
            QByteArray mutant = whole;
            const auto place = [&] { return static_cast<qsizetype>(random() % static_cast<size_t>(mutant.size())); };
            switch (random() % 4) {
            case 0:
                mutant[place()] = static_cast<char>(random());
                break;
            case 1:
                mutant.remove(place(), static_cast<qsizetype>(1 + random() % 20));
                break;
            case 2:
                mutant.insert(place(), pieces[random() % std::size(pieces)]);
                break;
            default: {
                const QByteArray copied = mutant.mid(place(), static_cast<qsizetype>(random() % 60));
                mutant.insert(place(), copied);
            }
            }
            QVERIFY2(agrees(mutant), mutant.constData());
            lists += isArray(mutant);
        }
        QVERIFY(lists > 1000);
    }

    void aListThatWouldFillTheMemoryDoesNotLoad()
    {
        const auto most = static_cast<qsizetype>(RecordingListReader::mostTakes);
        QCOMPARE(RecordingListReader::read(wrapped(QByteArray("<dict/>").repeated(most)))->size(), size_t(most));
        QVERIFY(!RecordingListReader::read(wrapped(QByteArray("<dict/>").repeated(most + 1))));
        QVERIFY(!RecordingListReader::read('(' + QByteArray("{},").repeated(most + 1) + ')'));
    }

    void entriesOfOtherKindsCountToo()
    {
        const auto most = static_cast<qsizetype>(RecordingListReader::mostTakes);
        QCOMPARE(RecordingListReader::read(wrapped(QByteArray("<true/>").repeated(most)))->size(), size_t(0));
        QVERIFY(!RecordingListReader::read(wrapped(QByteArray("<true/>").repeated(most + 1))));
    }

    void readingStopsWhenItIsToldTo_data()
    {
        QTest::addColumn<QByteArray>("entries");
        QTest::newRow("takes") << QByteArray("<dict/>").repeated(20'000);
        QTest::newRow("in one array") << "<array>" + QByteArray("<true/>").repeated(20'000) + "</array>";
        QTest::newRow("in one dictionary")
            << "<dict><key>x</key><dict>" + QByteArray("<key>a</key><true/>").repeated(20'000) + "</dict></dict>";
        QTest::newRow("in one list of codes")
            << "<dict><key>formats</key><array>" + QByteArray("<string/>").repeated(20'000) + "</array></dict>";
    }

    void readingStopsWhenItIsToldTo()
    {
        QFETCH(const QByteArray, entries);
        int looks = 0;
        QVERIFY(RecordingListReader::read(wrapped(entries), [&looks] { return ++looks < 0; }));
        QVERIFY(looks >= 20);
        looks = 0;
        QVERIFY(!RecordingListReader::read(wrapped(entries), [&looks] { return ++looks == 3; }));
        QCOMPARE(looks, 3);
    }

    void aHundredThousandTakesLoad()
    {
        QByteArray entries;
        for (int i = 0; i < 100'000; ++i)
            entries += "<dict><key>title</key><string>Take " + QByteArray::number(i) + "</string></dict>\n";
        const auto states = RecordingListReader::read(wrapped(entries));
        QVERIFY(states);
        QCOMPARE(states->size(), size_t(100'000));
        QCOMPARE(states->back().title, "Take 99999");
    }
};

QTEST_GUILESS_MAIN(tst_RecordingListReader)
#include "tst_RecordingListReader.moc"

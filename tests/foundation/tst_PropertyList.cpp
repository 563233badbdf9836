#include "GermanLocale.h"
#include "Mutants.h"

#include <QWPlatform/foundation/PropertyList.h>

#include <QTemporaryDir>
#include <QTest>
#include <QTimeZone>
#include <QXmlStreamReader>

#include <cmath>
#include <limits>
#include <sys/stat.h>

using namespace platform;

namespace
{
const QByteArray head = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                        "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
                        "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
                        "<plist version=\"1.0\">\n";

QByteArray document(const QByteArray &value)
{
    return head + value + "</plist>\n";
}

QVariantMap everyKind()
{
    return {{"array", QVariantList{1LL, "two", QVariantList()}},
            {"data", QByteArray("\0\1\2", 3)},
            {"date", QDateTime({2009, 3, 5}, {16, 7}, Qt::UTC)},
            {"dictionary", QVariantMap{{"x & <y>", "é"}}},
            {"false", false},
            {"integer", -5LL},
            {"real", 2.5},
            {"text", " a < b && c > d\r\n\t\"'\U0001F3B9 "},
            {"true", true}};
}

QByteArray nestedArrays(int levels)
{
    return QByteArray("<array>").repeated(levels) + QByteArray("</array>").repeated(levels);
}
} // namespace

class tst_PropertyList : public QObject
{
    Q_OBJECT

private slots:
    void everyKindOfValueComesBack()
    {
        const auto list = PropertyList::fromData(PropertyList::toXml(everyKind()));
        QVERIFY(list);
        QCOMPARE(*list, QVariant(everyKind()));
        const QVariantMap map = list->toMap();
        QCOMPARE(map["true"].typeId(), int(QMetaType::Bool));
        QCOMPARE(map["integer"].typeId(), int(QMetaType::LongLong));
        QCOMPARE(map["real"].typeId(), int(QMetaType::Double));
        QCOMPARE(map["date"].toDateTime().timeSpec(), Qt::UTC);
    }

    void writesThePublishedForm()
    {
        const QVariantMap list{
            {"b", QVariantList{true, 1, 0.5}}, {"a", ""}, {"c", QVariantMap()}, {"d", QByteArray("hi")}};
        QCOMPARE(PropertyList::toXml(list),
                 document("<dict>\n"
                          "\t<key>a</key>\n\t<string></string>\n"
                          "\t<key>b</key>\n\t<array>\n\t\t<true/>\n\t\t<integer>1</integer>\n"
                          "\t\t<real>0.5</real>\n\t</array>\n"
                          "\t<key>c</key>\n\t<dict/>\n"
                          "\t<key>d</key>\n\t<data>\n\taGk=\n\t</data>\n"
                          "</dict>\n"));
    }

    void linesOfDataAreAtMost76ColumnsWide_data()
    {
        QTest::addColumn<int>("depth");
        for (const int depth : {0, 1, 3, 8, 12})
            QTest::addRow("%d levels", depth) << depth;
    }

    void linesOfDataAreAtMost76ColumnsWide()
    {
        QFETCH(int, depth);
        QVariant list = QByteArray(1000, 'x');
        for (int i = 0; i < depth; ++i)
            list = QVariantList{list};
        const QByteArray xml = PropertyList::toXml(list);
        bool inside = false;
        for (const QByteArray &line : xml.split('\n')) {
            if (inside && !line.contains('<'))
                QVERIFY(line.size() + 7 * line.count('\t') <= 76);
            inside = line.endsWith("<data>") || (inside && !line.contains('<'));
        }
        QCOMPARE(PropertyList::fromData(xml), std::optional(list));
    }

    void integersOverTheirWholeRangeComeBack_data()
    {
        QTest::addColumn<QVariant>("value");
        QTest::newRow("least") << QVariant(std::numeric_limits<qlonglong>::min());
        QTest::newRow("greatest signed") << QVariant(std::numeric_limits<qlonglong>::max());
        QTest::newRow("above signed") << QVariant(qulonglong(1) << 63);
        QTest::newRow("greatest") << QVariant(std::numeric_limits<qulonglong>::max());
        QTest::newRow("zero") << QVariant(0LL);
    }

    void integersOverTheirWholeRangeComeBack()
    {
        QFETCH(QVariant, value);
        const auto list = PropertyList::fromData(PropertyList::toXml(value));
        QVERIFY(list);
        QCOMPARE(list->typeId(), value.typeId());
        QCOMPARE(*list, value);
    }

    void realsComeBackExactlyInEveryLocale()
    {
        GermanLocale german;
        for (const double value : {0.5, -0.1, 100000.0, 1e300, 5e-324, 1.0 / 3, std::numeric_limits<double>::max()}) {
            const QByteArray xml = PropertyList::toXml(value);
            QVERIFY(!xml.contains(','));
            QCOMPARE(PropertyList::fromData(xml)->toDouble(), value);
        }
        QVERIFY(std::isnan(PropertyList::fromData(PropertyList::toXml(std::nan("")))->toDouble()));
        QVERIFY(std::isinf(PropertyList::fromData(PropertyList::toXml(-HUGE_VAL))->toDouble()));
        if (!german.isComplete())
            QSKIP("The machine cannot make a German C locale; only Qt's was tried.");
    }

    void datesAreWrittenInWholeSecondsUtc()
    {
        const QDateTime date({2009, 3, 5}, {16, 7, 1, 999}, Qt::OffsetFromUTC, -5 * 3600);
        QVERIFY(PropertyList::toXml(date).contains("<date>2009-03-05T21:07:01Z</date>"));
    }

    void charactersThatXmlCannotHoldComeBack_data()
    {
        QTest::addColumn<QString>("text");
        for (char16_t c = 1; c < 0x20; ++c)
            QTest::addRow("%d", c) << QString("a") + QChar(c) + "b";
        QTest::newRow("not a character") << QString(QChar(0xFFFE)) + QChar(0xFFFF);
        QTest::newRow("several") << QString("\x01\x02 \x1f\x1f");
        QTest::newRow("the mark") << QString("\uE01B");
        QTest::newRow("marks and digits") << QString("\uE01B\uE01B0001 \uE01Be01b\x01"
                                                     "0002\uE01B");
    }

    void charactersThatXmlCannotHoldComeBack()
    {
        QFETCH(QString, text);
        const QVariant list = QVariantMap{{text, text}, {"k", QVariantList{text}}};
        const QByteArray xml = PropertyList::toXml(list);
        QXmlStreamReader strict(xml);
        while (!strict.atEnd())
            strict.readNext();
        QVERIFY2(!strict.hasError(), qPrintable(strict.errorString()));
        QVERIFY(!xml.contains("\xEF\xBF\xBE") && !xml.contains("\xEF\xBF\xBF"));
        QCOMPARE(PropertyList::fromData(xml), std::optional(list));
    }

    /// Each of them taking as long as the whole text would take hours.
    void millionsOfSuchCharactersComeBack()
    {
        const QString text(2'000'000, QChar(1));
        QCOMPARE(PropertyList::fromData(PropertyList::toXml(text)), std::optional<QVariant>(text));
    }

    void markThatStandsForNothingStaysAsItIs_data()
    {
        QTest::addColumn<QString>("text");
        for (const char *text :
             {"\uE01B", "a\uE01B0041", "\uE01B001", "\uE01B00 1", "\uE01B-001", "\uE01B0000", "\uE01Bxyzt"})
            QTest::newRow(text) << QString::fromUtf8(text);
    }

    void markThatStandsForNothingStaysAsItIs()
    {
        QFETCH(QString, text);
        const auto list = PropertyList::fromData(document("<string>" + text.toUtf8() + "</string>\n"));
        QCOMPARE(list, std::optional<QVariant>(text));
        QCOMPARE(PropertyList::fromData(PropertyList::toXml(text)), std::optional<QVariant>(text));
    }

    void accepts_data()
    {
        QTest::addColumn<QByteArray>("data");
        QTest::addColumn<QVariant>("value");
        const auto row = [](const char *name, const QByteArray &data, const QVariant &value) {
            QTest::newRow(name) << data << value;
        };
        const QVariant a("a");
        row("no prolog", "<plist><string>a</string></plist>", a);
        row("byte-order mark", "\xEF\xBB\xBF" + document("<string>a</string>"), a);
        row("older document type",
            "<!DOCTYPE plist PUBLIC \"-//Apple Computer//DTD PLIST 1.0//EN\" \"x\"><plist><string>a</string></plist>",
            a);
        row("comments", "<!-- <a> --><plist><!-- - --><string><!---->a<!-- b --></string></plist><!-- end -->", a);
        row("CDATA", "<plist><string>x<![CDATA[<&amp;]]>y</string></plist>", "x<&amp;y");
        row("instruction", "<plist><?x y?><string>a</string></plist>", a);
        row("entities", "<plist><string>&lt;&gt;&amp;&quot;&apos;&#65;&#x42;&#x1F3B9;</string></plist>",
            "<>&\"'AB\U0001F3B9");
        row("line ends", "<plist><string>a\r\nb\rc&#13;d</string></plist>", "a\nb\nc\rd");
        row("blanks in tags", "<plist version = '1.0' >\n<string >a</string\n>\t</plist >", a);
        row("blank text", "<plist><string> \n</string></plist>", " \n");
        row("empty text", "<plist><string/></plist>", "");
        row("control characters", "<plist><string>a\x01\x1b z</string></plist>", "a\x01\x1b z");
        row("long true", "<plist><true></true></plist>", true);
        row("hexadecimal", "<plist><integer>0xFfffffffffffffff</integer></plist>",
            std::numeric_limits<qulonglong>::max());
        row("negative hexadecimal", "<plist><integer>-0x10</integer></plist>", -16LL);
        row("plus sign", "<plist><integer> +7\n</integer></plist>", 7LL);
        row("exponent", "<plist><real>+1.5e2</real></plist>", 150.0);
        row("infinity", "<plist><real>-Infinity</real></plist>", -HUGE_VAL);
        row("data with blanks", "<plist><data>\n\tA A\r\nE=\n</data></plist>", QByteArray("\0\1", 2));
        row("empty data", "<plist><data/></plist>", QByteArray());
        row("duplicate keys", "<plist><dict><key>k</key><true/><key>k</key><string>a</string></dict></plist>",
            QVariantMap{{"k", a}});
        row("empty key", "<plist><dict><key/><true/></dict></plist>", QVariantMap{{"", true}});
        row("keys in any order", "<plist><dict><key>b</key><true/><key>a&amp;</key><false/></dict></plist>",
            QVariantMap{{"a&", false}, {"b", true}});
        row("byte-order marks in text", "<plist><string>\xEF\xBB\xBF\xEF\xBB\xBFé</string></plist>",
            QStringLiteral("\uFEFF\uFEFF\u00E9"));
        row("UTF-16", QByteArray("\xFF\xFE<\0p\0l\0i\0s\0t\0>\0<\0t\0r\0u\0e\0/\0>\0<\0/\0p\0l\0i\0s\0t\0>\0", 46),
            true);
    }

    void accepts()
    {
        QFETCH(QByteArray, data);
        QFETCH(QVariant, value);
        const auto list = PropertyList::fromData(data);
        QVERIFY(list);
        QCOMPARE(*list, value);
    }

    void refuses_data()
    {
        QTest::addColumn<QByteArray>("data");
        for (const char *value : {"",
                                  "x",
                                  "<null/>",
                                  "<string>a</string><string>b</string>",
                                  "<string>a</key>",
                                  "<string>&foo;</string>",
                                  "<string>&#0;</string>",
                                  "<string>&#xD800;</string>",
                                  "<string>&#x110000;</string>",
                                  "<string>&amp</string>",
                                  "<string>&#;</string>",
                                  "<string>\xff</string>",
                                  "<string>\xed\xa0\x80</string>",
                                  "<string><b/></string>",
                                  "<string a>b</string>",
                                  "<string a='1'b='2'>b</string>",
                                  "<string a='<'>b</string>",
                                  "<Dict/>",
                                  "<dict><key>a</key></dict>",
                                  "<dict><true/></dict>",
                                  "<dict><key>a</key><true/>x</dict>",
                                  "<dict><key>a</key><key>b</key></dict>",
                                  "<array>x</array>",
                                  "<array><true/></dict>",
                                  "<true>x</true>",
                                  "<integer/>",
                                  "<integer></integer>",
                                  "<integer>1.5</integer>",
                                  "<integer>1x</integer>",
                                  "<integer>--1</integer>",
                                  "<integer>0x</integer>",
                                  "<integer>18446744073709551616</integer>",
                                  "<integer>-9223372036854775809</integer>",
                                  "<real/>",
                                  "<real>0,5</real>",
                                  "<real>1e999</real>",
                                  "<real>+-1</real>",
                                  "<real>nan(1)</real>",
                                  "<real>0x1p3</real>",
                                  "<date/>",
                                  "<date>2009-03-05</date>",
                                  "<date>2009-02-29T00:00:00Z</date>",
                                  "<date>2009-03-05T24:00:00Z</date>",
                                  "<date>2009-03-05T16:07:00+Z</date>",
                                  "<date>2009-03-05 16:07:00Z</date>",
                                  "<date>0000-01-01T00:00:00Z</date>",
                                  "<date>-009-03-05T16:07:00Z</date>",
                                  "<data>A</data>",
                                  "<data>AAE</data>",
                                  "<data>A===</data>",
                                  "<data>AA=A</data>",
                                  "<data>A!==</data>",
                                  "<![CDATA[x]]><true/>",
                                  "<!-->--><true/><!--",
                                  "<true/",
                                  "< true/>",
                                  "<true / >"})
            QTest::newRow(value) << document(value);
        QTest::newRow("no data") << QByteArray();
        QTest::newRow("no plist") << QByteArray("<array/>");
        QTest::newRow("empty plist") << QByteArray("<plist/>");
        QTest::newRow("text behind") << document("<true/>") + "x";
        QTest::newRow("two lists") << document("<true/>") + "<plist><true/></plist>";
        QTest::newRow("null character") << document(QByteArray("<string>a\0b</string>", 20));
        QTest::newRow("null character in CDATA") << document(QByteArray("<string><![CDATA[\0]]></string>", 30));
        QTest::newRow("garbage") << QByteArray("\x89PNG\r\n\x1a\n\0\0\0\rIHDR", 16);
        QTest::newRow("only a byte-order mark") << QByteArray("\xEF\xBB\xBF");
        QTest::newRow("half a UTF-16 character") << QByteArray("\xFF\xFE<");
        QTest::newRow("entity bomb") << QByteArray("<!DOCTYPE plist [<!ENTITY a \"aaaa\"><!ENTITY b \"&a;&a;\">]>"
                                                   "<plist><string>&b;</string></plist>");
    }

    void refuses()
    {
        QFETCH(QByteArray, data);
        QVERIFY(!PropertyList::fromData(data));
    }

    void nothingCutShortIsAList()
    {
        const QByteArray whole = PropertyList::toXml(everyKind()).trimmed();
        QVERIFY(PropertyList::fromData(whole));
        for (qsizetype size = 0; size < whole.size(); ++size)
            QVERIFY2(!PropertyList::fromData(whole.first(size)), whole.first(size).constData());
    }

    void levelsAreLimited()
    {
        QVERIFY(PropertyList::fromData(document(nestedArrays(512))));
        QVERIFY(!PropertyList::fromData(document(nestedArrays(513))));
        QVERIFY(!PropertyList::fromData(document(nestedArrays(1'000'000))));
        QVERIFY(!PropertyList::fromData(head + QByteArray("<array>").repeated(1'000'000)));
        QVariant list = true;
        for (int i = 0; i < 512; ++i)
            list = QVariantList{list};
        QVERIFY(!PropertyList::toXml(list).isEmpty());
        QVERIFY(PropertyList::toXml(QVariantMap{{"a", list}}).isEmpty());
    }

    void whatAListCannotHoldIsNotWritten()
    {
        for (const QVariant &value :
             {QVariant(), QVariant::fromValue(nullptr), QVariant(QPoint(1, 2)), QVariant(QDateTime()),
              QVariant(QString(QChar(0))), QVariant(QDateTime({12000, 1, 1}, {0, 0}))}) {
            QVERIFY(PropertyList::toXml(value).isEmpty());
            QVERIFY(PropertyList::toXml(QVariantList{QVariantMap{{"a", value}}}).isEmpty());
        }
        QVERIFY(PropertyList::toXml(QVariantMap{{QString(QChar(0)), true}}).isEmpty());
    }

    void damagedListsAreListsOrNothing()
    {
        damagedCopiesAreListsOrNothing(PropertyList::toXml(everyKind()), 8'000, PropertyList::fromData);
    }

    void filesOfTheWrongKindAreEmpty()
    {
        QTemporaryDir folder;
        const QString path = folder.filePath("list.plist");
        const auto write = [&](const QVariant &list) {
            QFile file(path);
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write(PropertyList::toXml(list));
        };
        write(QVariantList{true});
        QCOMPARE(PropertyList::arrayFromFile(path), QVariantList{true});
        QVERIFY(!PropertyList::dictionaryFromFile(path));
        write(QVariantMap{{"a", true}});
        QVERIFY(PropertyList::arrayFromFile(path).isEmpty());
        QCOMPARE(PropertyList::dictionaryFromFile(path), (std::optional<QVariantMap>({{"a", true}})));
        QVERIFY(!PropertyList::fromFile(folder.filePath("missing")));
        QVERIFY(!PropertyList::fromFile(folder.path()));
        QCOMPARE(mkfifo(qPrintable(folder.filePath("pipe")), 0600), 0);
        QVERIFY(!PropertyList::fromFile(folder.filePath("pipe"))); // and does not wait for a writer
    }
};

QTEST_GUILESS_MAIN(tst_PropertyList)
#include "tst_PropertyList.moc"

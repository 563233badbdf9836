#include "Mutants.h"

#include <QWPlatform/foundation/PropertyList.h>

#include <QStringConverter>
#include <QTest>

using namespace platform;

namespace
{
const QByteArray sample =
    "// shortcuts\n{ name = \"Acme \\\"Echo\\\"\"; keys = (a, 'b c', { x = <0fbd 77>; }, ); /* end */ }";
}

class tst_TextPropertyList : public QObject
{
    Q_OBJECT

private slots:
    void listsAreRead()
    {
        const QVariantList keys{"a", "b c", QVariantMap{{"x", QByteArray("\x0f\xbd\x77")}}};
        const QVariantMap expected{{"name", "Acme \"Echo\""}, {"keys", keys}};
        QCOMPARE(PropertyList::fromData(sample), std::optional<QVariant>(expected));
    }

    void stringsFilesAreRead_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QString>("value"); // of "k"
        const auto row = [](const char *name, const QByteArray &text, const QString &value) {
            QTest::newRow(name) << text << value;
        };
        row("plain", "\"k\" = \"v\";", "v");
        row("bare", "k=v;", "v");
        row("bare characters", "k = a_$/:.-9;", "a_$/:.-9");
        row("key alone", "\"k\";", "k");
        row("comments", "/* a = b; */ // c\n\"k\" /* * */ = // d\r\"v\" ; //", "v");
        row("UTF-8", "\"k\" = \"Größe …\";", "Größe …");
        row("byte-order mark", "\xEF\xBB\xBF\"k\" = \"v\";", "v");
        row("letters", "k = \"a\\n\\t\\r\\\\\\\"\\'\\q\";", "a\n\t\r\\\"'q");
        row("UTF-16 units", "k = \"\\U00e9\\ud83c\\udfb9\\U26\";", QString());
        row("UTF-16 pair", "k = \"\\U00e9\\ud83C\\udfb90\";", "é\U0001F3B90");
        row("octal", "k = \"\\101\\7z\\0601\";", QString("A\7z01"));
        row("line end in text", "k = \"a\nb\\\nc\";", "a\nb\nc");
        row("last one wins", "k = a; k = b;", "b");
        row("empty text", "k = \"\";", "");
        row("XML", "<plist><dict><key>k</key><string>v</string></dict></plist>", "v");
    }

    void stringsFilesAreRead()
    {
        QFETCH(QByteArray, text);
        QFETCH(QString, value);
        QCOMPARE(PropertyList::fromData(text).value_or(QVariant()).toMap().value("k").toString(), value);
    }

    void wideEncodingsAreRead_data()
    {
        QTest::addColumn<QStringConverter::Encoding>("encoding");
        QTest::newRow("little endian") << QStringConverter::Utf16LE;
        QTest::newRow("big endian") << QStringConverter::Utf16BE;
    }

    void wideEncodingsAreRead()
    {
        QFETCH(QStringConverter::Encoding, encoding);
        QStringEncoder encoder(encoding, QStringConverter::Flag::WriteBom);
        const QByteArray data = encoder(QString("\"Größe\" = \"\U0001F3B9\";"));
        const QVariant expected = QVariantMap{{"Größe", "\U0001F3B9"}};
        QCOMPARE(PropertyList::fromText(data), std::optional(expected));
        QCOMPARE(PropertyList::fromData(data), std::optional(expected));
        QVERIFY(!PropertyList::fromData(data.chopped(1)));
    }

    void emptyTextIsAnEmptyTableButNoList()
    {
        for (const char *text : {"", " \n", "/* nothing */"}) {
            QCOMPARE(PropertyList::fromText(text), std::optional<QVariant>(QVariantMap()));
            QVERIFY(!PropertyList::fromData(text));
        }
        QCOMPARE(PropertyList::fromData("{}"), std::optional<QVariant>(QVariantMap()));
    }

    void entriesByTheThousandNeedRoom()
    {
        constexpr int few = 60'000;
        constexpr int many = 400'000;
        QCOMPARE(PropertyList::fromText('(' + QByteArray("a,").repeated(few) + ')')->toList().size(), few);
        QCOMPARE(PropertyList::fromText('(' + QByteArray("\tab,\n").repeated(many) + ')')->toList().size(), many);
        QVERIFY(!PropertyList::fromText('(' + QByteArray("a,").repeated(many) + ')'));
        QVERIFY(!PropertyList::fromText('{' + QByteArray("a;").repeated(many) + '}'));
    }

    void refuses_data()
    {
        QTest::addColumn<QByteArray>("text");
        for (const char *text : {"word",
                                 "\"text\"",
                                 "a = ",
                                 "a = b",
                                 "a = ;",
                                 "= b;",
                                 "a = b; }",
                                 "{ a = b }",
                                 "{ a = b; ",
                                 "(a b)",
                                 "(a",
                                 "(,)",
                                 "( ) x",
                                 "<0f",
                                 "<0>",
                                 "<xy>",
                                 "a = \"b;",
                                 "a = \"\\",
                                 "a = \"\\U12\";",
                                 "a = \"\\U0000\";",
                                 "a = \"\\0\";",
                                 "a = \"\\ud83c\";",
                                 "/* open",
                                 "é = ü;",
                                 "a = \xff;",
                                 "a = b;; c = d;",
                                 "<html>",
                                 "{ ( a ) = b; }"})
            QTest::newRow(text) << QByteArray(text);
        QTest::newRow("null") << QByteArray("a = \"\0\";", 8);
        QTest::newRow("null at the end") << QByteArray("a = b;\0", 7);
    }

    void refuses()
    {
        QFETCH(QByteArray, text);
        QVERIFY(!PropertyList::fromText(text));
        QVERIFY(!PropertyList::fromData(text));
    }

    void nothingCutShortIsAList()
    {
        for (qsizetype size = 0; size < sample.size(); ++size)
            QVERIFY2(!PropertyList::fromData(sample.first(size)), sample.first(size).constData());
    }

    void levelsAreLimited()
    {
        const auto nested = [](int levels) -> QByteArray { return QByteArray(levels, '(') + QByteArray(levels, ')'); };
        QVERIFY(PropertyList::fromText(nested(512)));
        QVERIFY(!PropertyList::fromText(nested(513)));
        QVERIFY(!PropertyList::fromText(nested(1'000'000)));
        QVERIFY(!PropertyList::fromText(QByteArray("{a=").repeated(1'000'000)));
    }

    void damagedListsAreListsOrNothing() { damagedCopiesAreListsOrNothing(sample, 10'000, PropertyList::fromText); }
};

QTEST_GUILESS_MAIN(tst_TextPropertyList)
#include "tst_TextPropertyList.moc"

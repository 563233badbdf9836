#include "Mutants.h"

#include <QWPlatform/foundation/PropertyList.h>

#include <QTest>

using namespace platform;

namespace
{
const QByteArray sample = QByteArray::fromHex(
    "62706c6973743030d3010203040b0c516151626100e9a605060708090a0923400400000000000013ffffffffffffffff1400000000000000"
    "0080000000000000004200013341aec06048000000100157782026203c793e080f1113161d1e273041444d4f0000000000000101000000000"
    "000000d00000000000000000000000000000057");

QByteArray bigEndian(quint64 value, int size)
{
    QByteArray bytes;
    for (int shift = 8 * (size - 1); shift >= 0; shift -= 8)
        bytes.append(static_cast<char>(value >> shift));
    return bytes;
}

/// A binary list of @p objects, the first on top; references have two bytes.
QByteArray listOf(const QByteArrayList &objects)
{
    QByteArray list = "bplist00";
    QByteArray offsets;
    for (const QByteArray &object : objects) {
        offsets += bigEndian(static_cast<quint64>(list.size()), 4);
        list += object;
    }
    const auto table = static_cast<quint64>(list.size());
    return list + offsets + QByteArray(6, '\0') + "\4\2" + bigEndian(static_cast<quint64>(objects.size()), 8) +
           bigEndian(0, 8) + bigEndian(table, 8);
}

/// A list of one-byte references and offsets in which @p objects are all there is between header and trailer.
QByteArray narrowList(const QByteArray &objects, const QByteArray &offsets)
{
    return "bplist00" + objects + offsets + QByteArray(6, '\0') + "\1\1" +
           bigEndian(static_cast<quint64>(offsets.size()), 8) + bigEndian(0, 8) +
           bigEndian(8 + static_cast<quint64>(objects.size()), 8);
}

QByteArray arrayOf(std::initializer_list<int> references)
{
    QByteArray object(1, static_cast<char>(0xA0 + references.size()));
    for (const int reference : references)
        object += bigEndian(static_cast<quint64>(reference), 2);
    return object;
}

QByteArray arrayOfMany(int reference, int times)
{
    return QByteArray(1, static_cast<char>(0xA0 + times)) +
           bigEndian(static_cast<quint64>(reference), 2).repeated(times);
}

QByteArray hex(const char *digits)
{
    return QByteArray::fromHex(digits);
}

/// @p levels arrays, each holding the next @p width times; the last holds a truth.
QByteArray chain(int levels, int width)
{
    QByteArrayList objects;
    for (int i = 0; i < levels; ++i)
        objects << arrayOfMany(i + 1, width);
    return listOf(objects << "\x09");
}
} // namespace

class tst_BinaryPropertyList : public QObject
{
    Q_OBJECT

private slots:
    void sampleIsRead()
    {
        const QVariantList a{
            true, 2.5, -1LL, qulonglong(1) << 63, QByteArray("\0\1", 2), QDateTime({2009, 3, 5}, {16, 7}, Qt::UTC)};
        const QVariantMap expected{{"a", a}, {"b", 1LL}, {"é", "x & <y>"}};
        QCOMPARE(PropertyList::fromData(sample), std::optional<QVariant>(expected));
    }

    void scalarsAreRead_data()
    {
        QTest::addColumn<QByteArray>("object");
        QTest::addColumn<QVariant>("value"); // invalid: no list
        const auto row = [](const char *object, const QVariant &value) {
            QTest::newRow(object) << hex(object) << value;
        };
        row("08", false);
        row("00", {});
        row("0f", {});
        row("10ff", 255LL);
        row("11ffff", 65535LL);
        row("12ffffffff", 4294967295LL);
        row("13fffffffffffffffe", -2LL);
        row("140000000000000000ffffffffffffffff", ~qulonglong(0));
        row("14fffffffffffffffffffffffffffffffe", -2LL);
        row("1400000000000000010000000000000000", {});
        row("15", {});
        row("223f000000", 0.5);
        row("233fe0000000000000", 0.5);
        row("21ffff", {});
        row("330000000000000000", QDateTime({2001, 1, 1}, {0, 0}, Qt::UTC));
        row("337ff8000000000000", {});
        row("337fe0000000000000", {});
        row("33c22d63c37f000000", QDateTime({1, 1, 1}, {0, 0}, Qt::UTC));
        row("33c22d63c37f020000", {}); // the second before the year 1
        row("33424d62d23c7f8000", QDateTime({9999, 12, 31}, {23, 59, 59}, Qt::UTC));
        row("33424d62d23c800000", {});
        row("40", QByteArray());
        row("5161", "a");
        row("51e9", {});
        row("5100", {}); // a null character
        row("610000", {});
        row("6100e9", "é");
        row("62d83cdfb9", "\U0001F3B9");
        row("61d83c", {});
        row("5f10026162", "ab");
        row("5f13ffffffffffffffff", {});
        row("5f14", {});
        row("6f137fffffffffffffff", {});
        row("8100", {});
        row("a0", QVariantList());
        row("d0", QVariantMap());
        row("f0", {});
    }

    void scalarsAreRead()
    {
        QFETCH(QByteArray, object);
        QFETCH(QVariant, value);
        const auto list = PropertyList::fromData(listOf({object}));
        QCOMPARE(list.value_or(QVariant()), value);
        QCOMPARE(list.value_or(QVariant()).typeId(), value.typeId());
    }

    void nothingCutShortIsAList()
    {
        for (qsizetype size = 0; size < sample.size(); ++size)
            QVERIFY(!PropertyList::fromData(sample.first(size)));
    }

    void damagedListsAreListsOrNothing() { damagedCopiesAreListsOrNothing(sample, 50'000, PropertyList::fromData); }

    void cyclesAreRefused()
    {
        QVERIFY(!PropertyList::fromData(listOf({arrayOf({0})})));
        QVERIFY(!PropertyList::fromData(listOf({arrayOf({1}), arrayOf({2, 0}), "\x09"})));
        QVERIFY(!PropertyList::fromData(listOf({hex("d100010000"), "\x51k"})));
    }

    void referencesAreChecked()
    {
        QVERIFY(PropertyList::fromData(listOf({arrayOf({1}), "\x09"})));
        QVERIFY(!PropertyList::fromData(listOf({arrayOf({2}), "\x09"})));
        QVERIFY(!PropertyList::fromData(listOf({hex("d100010001"), "\x09"}))); // the key is no text
    }

    void levelsAreLimited()
    {
        QVERIFY(PropertyList::fromData(chain(512, 1)));
        QVERIFY(!PropertyList::fromData(chain(513, 1)));
        QVERIFY(!PropertyList::fromData(chain(60'000, 1)));
    }

    void levelsCountThroughSharedObjectsToo()
    {
        // The same 300 levels are met first near the top and then 300 levels further down.
        QByteArrayList objects{arrayOf({301, 1})};
        for (int i = 1; i < 300; ++i)
            objects << arrayOf({i + 1});
        objects << arrayOf({301});
        for (int i = 301; i < 600; ++i)
            objects << arrayOf({i + 1});
        QVERIFY(!PropertyList::fromData(listOf(objects << "\x09")));
    }

    void sharingIsReadButCannotExplode()
    {
        const auto list = PropertyList::fromData(listOf({arrayOf({1, 1}), "\x51"
                                                                          "a"}));
        QCOMPARE(list, std::optional<QVariant>(QVariantList{"a", "a"}));
        QVERIFY(!PropertyList::fromData(chain(64, 2))); // 2^64 truths when walked
    }

    void whatIsReadStaysInProportionToItsFile()
    {
        int lists = 0;
        for (const int width : {2, 14})
            for (int levels = 1; levels <= 40; ++levels)
                lists += isInProportion(chain(levels, width)) ? 1 : 0;
        QVERIFY(lists > 15);
    }

    void indentationCountsToo()
    {
        QByteArrayList objects; // 500 levels, and below them 14^4 truths, a line of 500 tabs each
        for (int i = 0; i < 500; ++i)
            objects << arrayOf({i + 1});
        for (int i = 500; i < 504; ++i)
            objects << arrayOfMany(i + 1, 14);
        QVERIFY(!PropertyList::fromData(listOf(objects << "\x09")));
    }

    void manyReferencesToFewObjectsAreRefused()
    {
        const QByteArray references(16 << 20, '\1');
        const QByteArray array = "\xAF\x12" + bigEndian(static_cast<quint64>(references.size()), 4) + references;
        const QByteArray list = "bplist00" + array + "\x09" + bigEndian(8, 4) +
                                bigEndian(8 + static_cast<quint64>(array.size()), 4) + QByteArray(6, '\0') + "\4\1" +
                                bigEndian(2, 8) + bigEndian(0, 8) +
                                bigEndian(9 + static_cast<quint64>(array.size()), 8);
        QVERIFY(!PropertyList::fromData(list));
    }

    void offsetsWithoutObjectsAreRefused()
    {
        QCOMPARE(PropertyList::fromData(narrowList("\x09", "\x08")), std::optional<QVariant>(true));
        QVERIFY(!PropertyList::fromData(narrowList("\x09", QByteArray(16 << 20, '\x08'))));
    }

    void objectsThatLieUponOneAnotherAreRefused()
    {
        QCOMPARE(PropertyList::fromData(narrowList(hex("a20102") + "RabRcd", "\x08\x0b\x0e")),
                 std::optional<QVariant>(QVariantList{"ab", "cd"}));
        QVERIFY(!PropertyList::fromData(narrowList(hex("a20102") + "TRabc", "\x08\x0b\x0c")));
    }

    void keysAndValuesThatManyShareAreRead()
    {
        constexpr int records = 20'000;
        QByteArrayList objects{"", "\x53key",
                               "\x59"
                               "otherName",
                               "\x5A"
                               "the vendor",
                               "\x09"};
        QByteArray all = "\xAF\x11" + bigEndian(records, 2);
        for (int i = 0; i < records; ++i) {
            all += bigEndian(static_cast<quint64>(objects.size()), 2);
            objects << hex("d2 0001 0002 0003 0004");
        }
        objects[0] = all;
        const auto list = PropertyList::fromData(listOf(objects));
        QVERIFY(list);
        QCOMPARE(list->toList().size(), records);
        QCOMPARE(list->toList().last(), QVariant(QVariantMap{{"key", "the vendor"}, {"otherName", true}}));
    }

private:
    /// False for no list; fails when its text is out of all proportion.
    static bool isInProportion(const QByteArray &data)
    {
        const auto list = PropertyList::fromData(data);
        if (!list)
            return false;
        const qsizetype most = (2 << 20) + 64 * data.size();
        const qsizetype size = PropertyList::toXml(*list).size();
        return QTest::qVerify(size < most, "size < most", qPrintable(QString::number(size)), __FILE__, __LINE__);
    }
};

QTEST_GUILESS_MAIN(tst_BinaryPropertyList)
#include "tst_BinaryPropertyList.moc"

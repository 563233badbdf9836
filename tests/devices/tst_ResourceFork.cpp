#include <QWPlatform/devices/components/ResourceFork.h>
#include <QWPlatform/plugins/AudioComponent.h>

#include <QTest>
#include <QtEndian>

#include <random>

using platform::fourCharCode;
using platform::ResourceFork;

namespace
{
/// One 'thng' 128 and one 'STR ' 128 named "Nm" (in a name list at the end).
QByteArray sampleFile()
{
    return QByteArray::fromHex("0000010000000146000000460000004a") + QByteArray(240, '\0') +
           QByteArray::fromHex("0000002c61756678446c617941636d650000000000000000646c6c6503e853545220008053545220007f"
                               "49434f4e0080000000121141636d653a2053757065722044656c6179"
                               "00000000000000000000000000000000000000000000000000"
                               "1c004600017468"
                               "6e6700000012535452200000001e0080ffff00000000000000000080000000000030000000000"
                               "38e6d80");
}

QByteArray word(quint32 value)
{
    QByteArray bytes(4, '\0');
    qToBigEndian(value, bytes.data());
    return bytes;
}

QByteArray half(int value)
{
    return word(static_cast<quint32>(value)).right(2);
}

/// What stands in the data area: @p blobs, each with its size before it.
QByteArray dataArea(const QByteArrayList &blobs)
{
    QByteArray area;
    for (const QByteArray &blob : blobs)
        area += word(static_cast<quint32>(blob.size())) + blob;
    return area;
}

/// A file with @p types types, "typ\0" on, all of which have the one list of references to @p offsets in @p area.
QByteArray fileOf(const QByteArray &area, const QList<quint32> &offsets, int types = 1)
{
    const int listSize = 2 + 8 * types;
    QByteArray map(24, '\0');
    map += half(28) + half(28 + listSize) + half(types - 1);
    for (int i = 0; i < types; ++i)
        map +=
            "typ" + QByteArray(1, static_cast<char>(i)) + half(static_cast<int>(offsets.size()) - 1) + half(listSize);
    for (const quint32 offset : offsets)
        map += half(128) + half(0xFFFF) + word(offset) + word(0);
    const auto size = static_cast<quint32>(area.size());
    return word(16) + word(16 + size) + word(size) + word(static_cast<quint32>(map.size())) + area + map;
}

constexpr quint32 firstType = fourCharCode("typ\0");
} // namespace

class tst_ResourceFork : public QObject
{
    Q_OBJECT

private slots:
    void readsTypesIdsNamesAndData()
    {
        QString error;
        const auto fork = ResourceFork::fromData(sampleFile(), &error);
        QVERIFY2(fork, qPrintable(error));
        const auto things = fork->resourcesOfType(fourCharCode("thng"));
        QCOMPARE(things.size(), std::size_t(1));
        QCOMPARE(things[0].id, qint16(128));
        QCOMPARE(things[0].name, QString());
        QCOMPARE(things[0].data.size(), 44);
        QCOMPARE(things[0].data.left(12), QByteArray("aufxDlayAcme"));
        const auto text = fork->resource(fourCharCode("STR "), 128);
        QVERIFY(text);
        QCOMPARE(text->data, QByteArray("\021Acme: Super Delay"));
        QCOMPARE(text->name, QString("émÄ")); // 8e 6d 80 in Mac Roman
        QVERIFY(!fork->resource(fourCharCode("STR "), 129));
        QVERIFY(fork->resourcesOfType(fourCharCode("ICON")).empty());
    }

    void fileCutOffAnywhereIsNone()
    {
        const QByteArray whole = sampleFile();
        for (qsizetype size = 0; size < whole.size(); ++size)
            QVERIFY2(!ResourceFork::fromData(whole.left(size)), qPrintable(QString::number(size)));
    }

    void garbageNeverReadsOutside()
    {
        std::minstd_rand random;
        const QByteArray whole = sampleFile();
        int survivors = 0;
        for (int round = 0; round < 20000; ++round) {
            QByteArray damaged = whole;
            for (int i = 0; i < 4; ++i) // the numbers of header and map
                damaged[static_cast<qsizetype>(random() % 2 ? random() % 16 : 0x146 + random() % 70)] =
                    static_cast<char>(random());
            const auto fork = ResourceFork::fromData(damaged);
            survivors += fork ? 1 : 0;
            if (fork)
                for (const auto &resource : fork->resourcesOfType(fourCharCode("thng")))
                    QVERIFY(resource.data.size() <= damaged.size());
        }
        QVERIFY(survivors < 20000); // damage was seen
    }

    void resourcesShareTheirBytes()
    {
        const QByteArray area = dataArea({QByteArray(5'000'000, 'x')});
        const auto fork = ResourceFork::fromData(fileOf(area, QList<quint32>(3000, 0))); // copied: 15 GB
        QVERIFY(fork);
        const auto resources = fork->resourcesOfType(firstType);
        QCOMPARE(resources.size(), std::size_t(3000));
        QCOMPARE(resources.front().data.size(), 5'000'000);
        QCOMPARE(static_cast<const void *>(resources.back().data.constData()),
                 static_cast<const void *>(resources.front().data.constData()));
    }

    void dataThatLieUponOneAnotherAreDamage()
    {
        const QByteArray area = dataArea({"abc", "de"});
        const auto fork = ResourceFork::fromData(fileOf(area, {0, 7}));
        QVERIFY(fork);
        QCOMPARE(fork->resourcesOfType(firstType).at(1).data, "de");
        const QByteArray nested = dataArea({dataArea({dataArea({"abc"})})});
        QVERIFY(ResourceFork::fromData(fileOf(nested, {0})));
        QVERIFY(!ResourceFork::fromData(fileOf(nested, {0, 4, 8})));
    }

    void typesThatHaveOneListInCommonAreDamageWhenThereAreMany()
    {
        const QByteArray area = dataArea({"abc"});
        QVERIFY(ResourceFork::fromData(fileOf(area, QList<quint32>(4, 0), 1)));
        QVERIFY(!ResourceFork::fromData(fileOf(area, QList<quint32>(2500, 0), 4000))); // ten million resources
    }

    void firstResourceOfAnIdCounts()
    {
        const auto fork = ResourceFork::fromData(fileOf(dataArea({"abc", "de"}), {7, 0}));
        QVERIFY(fork);
        QCOMPARE(fork->resource(firstType, 128)->data, "de"); // both are 128
    }

    void noTypesAtAllIsAnEmptyFork()
    {
        QByteArray file = QByteArray::fromHex("00000010000000100000000000000 01e") + QByteArray(24, '\0');
        file += QByteArray::fromHex("001c001e") + QByteArray::fromHex("ffff");
        const auto fork = ResourceFork::fromData(file);
        QVERIFY(fork);
        QVERIFY(fork->resourcesOfType(0).empty());
    }
};

QTEST_GUILESS_MAIN(tst_ResourceFork)
#include "tst_ResourceFork.moc"

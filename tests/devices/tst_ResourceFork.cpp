#include <QWPlatform/devices/AudioComponent.h>
#include <QWPlatform/devices/ResourceFork.h>

#include <QTest>

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

#include "fakes/FakeSystem.h"
#include "fakes/QWTestMain.h"

#include <QWBase/QWComponentDescription.h>

using platform::fourCharCode;

class tst_QWComponentDescription : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void stateIsTheRecordMostSignificantByteFirst();
    void stateReadsBackEqual();
    void stateOfAnotherSizeIsNone_data();
    void stateOfAnotherSizeIsNone();
    void eachFieldCountsForEquality_data();
    void eachFieldCountsForEquality();
    void kindFollowsFromTheCodes_data();
    void kindFollowsFromTheCodes();
    void installedUnitsOfATypeComeInRegistryOrder();
    void travelsInAVariant();
};

void tst_QWComponentDescription::stateIsTheRecordMostSignificantByteFirst()
{
    const QWComponentDescription description(fourCharCode("aufx"), fourCharCode("Dlay"), fourCharCode("Acme"), 1,
                                             0x80000002);
    QCOMPARE(description.state(), QByteArray::fromHex("61756678446c617941636d650000000180000002"));
}

void tst_QWComponentDescription::stateReadsBackEqual()
{
    const QWComponentDescription description(0xA9616263, 0xFFFFFFFF, 0, 7, 9);
    const auto read = QWComponentDescription::descriptionWithState(description.state());
    QVERIFY(read);
    QCOMPARE(*read, description);
    QCOMPARE(read->type(), 0xA9616263u);
    QCOMPARE(read->flags(), 7u);
    QCOMPARE(read->flagsMask(), 9u);
}

void tst_QWComponentDescription::stateOfAnotherSizeIsNone_data()
{
    QTest::addColumn<int>("size");
    for (const int size : {0, 1, 19, 21, 40})
        QTest::addRow("%d bytes", size) << size;
}

void tst_QWComponentDescription::stateOfAnotherSizeIsNone()
{
    QFETCH(int, size);
    QVERIFY(!QWComponentDescription::descriptionWithState(QByteArray(size, 'a')));
}

void tst_QWComponentDescription::eachFieldCountsForEquality_data()
{
    QTest::addColumn<QWComponentDescription>("other");
    QTest::newRow("type") << QWComponentDescription(9, 2, 3, 4, 5);
    QTest::newRow("subtype") << QWComponentDescription(1, 9, 3, 4, 5);
    QTest::newRow("manufacturer") << QWComponentDescription(1, 2, 9, 4, 5);
    QTest::newRow("flags") << QWComponentDescription(1, 2, 3, 9, 5);
    QTest::newRow("flags mask") << QWComponentDescription(1, 2, 3, 4, 9);
}

void tst_QWComponentDescription::eachFieldCountsForEquality()
{
    QFETCH(QWComponentDescription, other);
    const QWComponentDescription description(1, 2, 3, 4, 5);
    QVERIFY(!description.isEqualToComponentDescription(other));
    QVERIFY(description.isEqualToComponentDescription(QWComponentDescription(1, 2, 3, 4, 5)));
    QCOMPARE(qHash(description), qHash(QWComponentDescription(1, 2, 3, 4, 5)));
}

void tst_QWComponentDescription::kindFollowsFromTheCodes_data()
{
    QTest::addColumn<QByteArray>("codes"); // type, subtype, manufacturer
    QTest::addColumn<QString>("kinds");
    QTest::newRow("music device") << QByteArray("aumuSynhAcme") << "instrument";
    QTest::newRow("effect") << QByteArray("aufxDlayAcme") << "effect";
    QTest::newRow("music effect") << QByteArray("aumfDlayAcme") << "effect";
    QTest::newRow("generator") << QByteArray("augnNoisAcme") << "";
    QTest::newRow("file player") << QByteArray("augnafplappl") << "player";
    QTest::newRow("buffer player") << QByteArray("augnssplappl") << "player";
    QTest::newRow("another's file player") << QByteArray("augnafplAcme") << "";
    QTest::newRow("the system's noise") << QByteArray("augnnoisappl") << "";
    QTest::newRow("effect coded like a player") << QByteArray("aufxafplappl") << "effect";
    QTest::newRow("output") << QByteArray("auoudef appl") << "";
}

void tst_QWComponentDescription::kindFollowsFromTheCodes()
{
    QFETCH(QByteArray, codes);
    QFETCH(QString, kinds);
    const auto description = QWComponentDescription::descriptionWithState(codes + QByteArray(8, '\0'));
    QVERIFY(description);
    QCOMPARE(description->isInstrument(), kinds == "instrument");
    QCOMPARE(description->isEffect(), kinds == "effect");
    QCOMPARE(description->isPlayer(), kinds == "player");
}

void tst_QWComponentDescription::installedUnitsOfATypeComeInRegistryOrder()
{
    FakeSystem system;
    platform::SystemScope current(system);
    const QWComponentDescription second(system.components.add("aufx", "Bbbb", "Acme", "Acme: B"));
    system.components.add("aumu", "Cccc", "Acme", "Acme: C");
    const QWComponentDescription first(system.components.add("aufx", "Aaaa", "Acme", "Acme: A"));

    const auto found = QWComponentDescription::componentDescriptionsOfType(fourCharCode("aufx"));
    QCOMPARE(found, (std::vector<QWComponentDescription>{second, first}));
    QVERIFY(QWComponentDescription::componentDescriptionsOfType(fourCharCode("augn")).empty());
    QCOMPARE(found.front().component(), system.components.entries.front().component);
}

void tst_QWComponentDescription::travelsInAVariant()
{
    const QWComponentDescription description(1, 2, 3);
    QCOMPARE(QVariant::fromValue(description).value<QWComponentDescription>(), description);
}

QW_TEST_MAIN(tst_QWComponentDescription)
#include "tst_QWComponentDescription.moc"

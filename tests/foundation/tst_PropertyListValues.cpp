#include <QWPlatform/foundation/lists/PropertyListValues.h>

#include <QDateTime>
#include <QTest>

#include <limits>

class tst_PropertyListValues : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void values_data();
    void values();
};

void tst_PropertyListValues::values_data()
{
    constexpr qlonglong least = std::numeric_limits<qlonglong>::min();
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<qlonglong>("integer");
    QTest::addColumn<bool>("truth");
    QTest::newRow("nothing") << QVariant() << 0LL << false;
    QTest::newRow("true") << QVariant(true) << 1LL << true;
    QTest::newRow("false") << QVariant(false) << 0LL << false;
    QTest::newRow("number") << QVariant(-17LL) << -17LL << true;
    QTest::newRow("zero") << QVariant(0LL) << 0LL << false;
    QTest::newRow("least") << QVariant(least) << least << true;
    QTest::newRow("most") << QVariant(std::numeric_limits<qlonglong>::max()) << std::numeric_limits<qlonglong>::max()
                          << true;
    QTest::newRow("beyond the range") << QVariant(std::numeric_limits<qulonglong>::max()) << 0LL << true;
    QTest::newRow("fraction") << QVariant(2.9) << 2LL << true;
    QTest::newRow("negative fraction") << QVariant(-2.9) << -2LL << true;
    QTest::newRow("part of one") << QVariant(0.5) << 0LL << true;
    QTest::newRow("large fraction") << QVariant(1e300) << 0LL << true;
    QTest::newRow("large negative fraction") << QVariant(-1e300) << 0LL << true;
    QTest::newRow("infinite") << QVariant(std::numeric_limits<double>::infinity()) << 0LL << true;
    QTest::newRow("not a number") << QVariant(std::numeric_limits<double>::quiet_NaN()) << 0LL << false;
    QTest::newRow("text of a number") << QVariant("42") << 42LL << true;
    QTest::newRow("text of zero") << QVariant("0") << 0LL << false;
    QTest::newRow("text of a fraction") << QVariant("3.7") << 3LL << true;
    QTest::newRow("text of a part of one") << QVariant("0.5") << 0LL << true;
    QTest::newRow("text beyond the range") << QVariant("1e300") << 0LL << true;
    QTest::newRow("text that is not a number") << QVariant("nan") << 0LL << false;
    QTest::newRow("text with a comma") << QVariant("3,7") << 0LL << false;
    QTest::newRow("YES") << QVariant("YES") << 0LL << true;
    QTest::newRow("true text") << QVariant("true") << 0LL << true;
    QTest::newRow("NO") << QVariant("NO") << 0LL << false;
    QTest::newRow("other text") << QVariant("Cut") << 0LL << false;
    QTest::newRow("empty text") << QVariant("") << 0LL << false;
    QTest::newRow("data") << QVariant(QByteArray("5")) << 0LL << false;
    QTest::newRow("date") << QVariant(QDateTime::fromMSecsSinceEpoch(5)) << 0LL << false;
    QTest::newRow("list") << QVariant(QVariantList{1}) << 0LL << false;
    QTest::newRow("dictionary") << QVariant(QVariantMap{{"1", 1}}) << 0LL << false;
}

void tst_PropertyListValues::values()
{
    QFETCH(QVariant, value);
    QTEST(platform::integerOf(value), "integer");
    QTEST(platform::truthOf(value), "truth");
}

QTEST_APPLESS_MAIN(tst_PropertyListValues)
#include "tst_PropertyListValues.moc"

#include <QWBase/tables/columns/TabularFigures.h>

#include <QTest>

using qw::TabularFigures;

namespace
{
/// Of a font whose ones are narrow.
double narrowOnes(QChar character)
{
    if (character == ':')
        return 3;
    return character == '1' ? 4 : 10;
}
} // namespace

class tst_TabularFigures : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void eachDigitHasTheRoomOfTheWidest();
    void otherCharactersKeepTheirRoom();
    void textWithoutCharactersHasNoWidth();
    void textsOfJoinedCharactersAreNotTakenApart();
};

void tst_TabularFigures::eachDigitHasTheRoomOfTheWidest()
{
    QCOMPARE(TabularFigures::digitWidth(narrowOnes), 10.0);
    QCOMPARE(TabularFigures::positions("11", narrowOnes), (QList<double>{3, 13, 20}));
    QCOMPARE(TabularFigures::positions("88", narrowOnes), (QList<double>{0, 10, 20}));
}

void tst_TabularFigures::otherCharactersKeepTheirRoom()
{
    QCOMPARE(TabularFigures::positions("1:08", narrowOnes), (QList<double>{3, 10, 13, 23, 33}));
}

void tst_TabularFigures::textWithoutCharactersHasNoWidth()
{
    QCOMPARE(TabularFigures::positions("", narrowOnes), QList<double>{0});
}

void tst_TabularFigures::textsOfJoinedCharactersAreNotTakenApart()
{
    QVERIFY(TabularFigures::canDraw("1:08 µs"));
    QVERIFY(!TabularFigures::canDraw(QStringLiteral("12 \u0645")));     // Arabic letters join
    QVERIFY(!TabularFigures::canDraw(QStringLiteral("e\u0301")));       // an accent above the letter before it
    QVERIFY(!TabularFigures::canDraw(QStringLiteral("\U0001F399 12"))); // two units, one character
}

QTEST_APPLESS_MAIN(tst_TabularFigures)
#include "tst_TabularFigures.moc"

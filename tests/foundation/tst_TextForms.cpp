#include "GermanLocale.h"

#include <QWPlatform/foundation/TextForms.h>

#include <QTest>

using namespace platform;

class tst_TextForms : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { m_german.emplace(); }
    void cleanupTestCase() { m_german.reset(); }

    void rectanglesAreWrittenAsShortAsTheyCanBe()
    {
        QCOMPARE(TextForms::stringFromRect({0, 12.5, 392, 259}), "{{0, 12.5}, {392, 259}}");
        QCOMPARE(TextForms::stringFromRect({-0.0, -100000, 0.1, 1e20}), "{{0, -100000}, {0.1, 1e+20}}");
        QCOMPARE(TextForms::stringFromPoint({1, 2}), "{1, 2}");
        QCOMPARE(TextForms::stringFromSize({3, 4}), "{3, 4}");
    }

    void rectanglesAreRead_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QRectF>("rect");
        const auto row = [](const QString &text, const QRectF &rect) {
            QTest::newRow(qPrintable(text)) << text << rect;
        };
        row("{{217, 544}, {411, 187}}", {217, 544, 411, 187});
        row("{{-1.5, +2}, {.5, 1e2}}", {-1.5, 2, 0.5, 100});
        row("1 2 3 4 5", {1, 2, 3, 4});
        row("x=1 y=2 w=3. h=4", {1, 2, 3, 4});
        row("{{1, 2}, {3}}", {});
        row("{{1e999, 2}, {3, 4}}", {});
        row("{{nan, inf}, {3, 4}}", {});
        row("", {});
        row("nothing", {});
    }

    void rectanglesAreRead()
    {
        QFETCH(QString, text);
        QFETCH(QRectF, rect);
        QCOMPARE(TextForms::rectFromString(text), rect);
    }

    void wholeRectanglesStayWithinWhatCanBeAdded()
    {
        QCOMPARE(TextForms::wholeRectFromString("{{217, 544}, {411, 187}}"), QRect(217, 544, 411, 187));
        QCOMPARE(TextForms::wholeRectFromString("{{0.4, -0.6}, {10.2, 3}}"), QRectF(0.4, -0.6, 10.2, 3).toRect());
        QCOMPARE(TextForms::wholeRectFromString("nothing"), QRect());
        const QRect far = TextForms::wholeRectFromString("{{1e300, -3e9}, {2147483647, 1e18}}");
        QCOMPARE(far.topLeft(), QPoint(1 << 28, -(1 << 28)));
        QCOMPARE(far.size(), QSize(1 << 28, 1 << 28));
        QVERIFY(far.right() > far.left() && far.bottom() > far.top());
    }

    void pointsAndSizesAreRead()
    {
        QCOMPARE(TextForms::pointFromString("{1, 2.5}"), QPointF(1, 2.5));
        QCOMPARE(TextForms::sizeFromString("{3, 4}"), QSizeF(3, 4));
        QCOMPARE(TextForms::sizeFromString("{3}"), QSizeF(0, 0));
    }

    void datesKeepTheirOffset_data()
    {
        QTest::addColumn<int>("offset");
        QTest::addColumn<QString>("text");
        QTest::newRow("west") << -5 * 3600 << "2009-03-05 16:07:00 -0500";
        QTest::newRow("UTC") << 0 << "2009-03-05 16:07:00 +0000";
        QTest::newRow("half an hour") << 5 * 3600 + 1800 << "2009-03-05 16:07:00 +0530";
        QTest::newRow("west by half an hour") << -1800 << "2009-03-05 16:07:00 -0030";
    }

    void datesKeepTheirOffset()
    {
        QFETCH(int, offset);
        QFETCH(QString, text);
        const QDateTime date({2009, 3, 5}, {16, 7}, Qt::OffsetFromUTC, offset);
        QCOMPARE(TextForms::stringFromDate(date), text);
        QCOMPARE(TextForms::dateFromString(text), std::optional(date));
        QCOMPARE(TextForms::dateFromString(text)->offsetFromUtc(), offset);
    }

    void otherTextIsNoDate_data()
    {
        QTest::addColumn<QString>("text");
        for (const char *text :
             {"", "2009-03-05", "2009-03-05 16:07:00", "2009-03-05 16:07:00 -05:00", "2009-03-05T16:07:00 -0500",
              "2009-02-29 16:07:00 -0500", "2009-03-05 24:00:00 -0500", "2009-03-05 16:07:60 -0500",
              "2009-03-05 16:07:00 -0560", "2009-03-05 16:07:00 -1500", "0000-03-05 16:07:00 +0000",
              "2009-03-05 16:07:00 -0500\n", " 2009-03-05 16:07:00 -0500", "2009-3-5 16:07:00 -0500"})
            QTest::newRow(text) << text;
    }

    void otherTextIsNoDate()
    {
        QFETCH(QString, text);
        QVERIFY(!TextForms::dateFromString(text));
    }

    void datesWithoutATextGiveNone()
    {
        QCOMPARE(TextForms::stringFromDate({}), QString());
        QCOMPARE(TextForms::stringFromDate(QDateTime({12000, 1, 1}, {0, 0}, Qt::UTC)), QString());
    }

private:
    std::optional<GermanLocale> m_german; ///< Nothing here may depend on the locale.
};

QTEST_GUILESS_MAIN(tst_TextForms)
#include "tst_TextForms.moc"

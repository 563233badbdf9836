#include <QWPlatform/linux/network/NumberedName.h>

#include <QTest>

using platform::numberedName;

class tst_NumberedName : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void numberStandsAheadOfTheExtension_data();
    void numberStandsAheadOfTheExtension();
    void longNamesAreShortenedInWholeCharacters_data();
    void longNamesAreShortenedInWholeCharacters();
};

void tst_NumberedName::numberStandsAheadOfTheExtension_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("number");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *label, const char *name, int number, const char *expected) {
        QTest::newRow(label) << QString(name) << number << QString(expected);
    };
    row("the first has none", "Take 1.wav", 1, "Take 1.wav");
    row("second", "Take 1.wav", 2, "Take 1 2.wav");
    row("thousandth", "Take 1.wav", 1000, "Take 1 1000.wav");
    row("without extension", "Take", 2, "Take 2");
    row("hidden, without extension", ".take", 2, ".take 2");
    row("several dots", "a.b.wav", 3, "a.b 3.wav");
    row("dot at the end", "Take.", 2, "Take 2.");
    row("sentence", "Mr. Smith plays", 2, "Mr. Smith plays 2");
    row("long last word", "Dr.Jekyllandmisterhyde", 2, "Dr.Jekyllandmisterhyde 2");
}

void tst_NumberedName::numberStandsAheadOfTheExtension()
{
    QFETCH(const QString, name);
    QFETCH(const int, number);
    QTEST(numberedName(name, number, 255), "expected");
}

void tst_NumberedName::longNamesAreShortenedInWholeCharacters_data()
{
    QTest::addColumn<QString>("stem");
    QTest::addColumn<int>("kept"); ///< Of the stem's code units, beside ".wav" and beside " 12.wav".
    QTest::addColumn<int>("keptWithNumber");
    QTest::newRow("as long as may be") << QString(16, 'x') << 16 << 13;
    QTest::newRow("one byte each") << QString(1000, 'x') << 16 << 13;
    QTest::newRow("two bytes each") << QString(1000, u'é') << 8 << 6;
    QTest::newRow("four bytes each") << QString("🎸").repeated(250) << 8 << 6;
    QTest::newRow("letter and accent") << QString("e\u0301").repeated(500) << 10 << 8;
    QTest::newRow("one character of 25 bytes") << QString("👩‍👩‍👧‍👦") << 0 << 0;
}

void tst_NumberedName::longNamesAreShortenedInWholeCharacters()
{
    QFETCH(const QString, stem);
    QFETCH(const int, kept);
    QFETCH(const int, keptWithNumber);
    QCOMPARE(numberedName(stem + ".wav", 1, 20), stem.left(kept) + ".wav");
    QCOMPARE(numberedName(stem + ".wav", 12, 20), stem.left(keptWithNumber) + " 12.wav");
}

QTEST_GUILESS_MAIN(tst_NumberedName)
#include "tst_NumberedName.moc"

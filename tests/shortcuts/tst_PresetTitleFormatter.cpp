#include <QWUtilities/shortcuts/editor/QWKeyboardShortcutPresetTitleFormatter.h>

#include <QTest>

class tst_PresetTitleFormatter : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void partialStrings_data();
    void partialStrings();
    void textsPassUnchanged();
};

void tst_PresetTitleFormatter::partialStrings_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("isValid");
    QTest::newRow("empty") << "" << true;
    QTest::newRow("a name") << "Left Hand" << true;
    QTest::newRow("a blank") << " " << true;
    QTest::newRow("dot first") << ".hidden" << false;
    QTest::newRow("dot alone") << "." << false;
    QTest::newRow("dot later") << "v1.2." << true;
    QTest::newRow("underscore first") << "_current" << false;
    QTest::newRow("underscore later") << "a_b" << true;
    QTest::newRow("slash first") << "/a" << false;
    QTest::newRow("slash within") << "a/b" << false;
    QTest::newRow("slash last") << "a/" << false;
    QTest::newRow("backslash") << "a\\b" << true;
    QTest::newRow("other letters") << "Schlüssel ⌘ 鍵" << true;
}

void tst_PresetTitleFormatter::partialStrings()
{
    QFETCH(QString, text);
    const QWKeyboardShortcutPresetTitleFormatter formatter;
    QTEST(formatter.isPartialStringValid(text), "isValid");
    int position = 0;
    QString typed = text;
    QTEST(formatter.validate(typed, position) == QValidator::Acceptable, "isValid");
    QCOMPARE(typed, text);
}

void tst_PresetTitleFormatter::textsPassUnchanged()
{
    const QWKeyboardShortcutPresetTitleFormatter formatter;
    for (const QString text : {"", "Name", "_a/b"}) {
        QCOMPARE(formatter.stringForObjectValue(text), text);
        QCOMPARE(formatter.objectValueForString(text), text);
    }
}

QTEST_GUILESS_MAIN(tst_PresetTitleFormatter)
#include "tst_PresetTitleFormatter.moc"

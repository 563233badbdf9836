#include <QWPlatform/network/transfers/StrictUrl.h>

#include <QTest>

using platform::urlAsItStands;

class tst_StrictUrl : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void allowedTextStaysAsItIs_data();
    void allowedTextStaysAsItIs();
    void everyOtherCharacterIsRefused_data();
    void everyOtherCharacterIsRefused();
    void textThatIsNoUrlIsRefused_data();
    void textThatIsNoUrlIsRefused();
};

void tst_StrictUrl::allowedTextStaysAsItIs_data()
{
    QTest::addColumn<QByteArray>("text");
    for (const char *const text :
         {"http://192.168.1.5:8080/download?filename=take1&format=wav", "http://h/a%20b?c=%C3%A9#d%2F",
          "http://h/?-._~!$&'()*+,;=:@/?", "http://h/#-._~!$&'()*+,;=:@/?", "http://[::1]:80/x", "https://u:p@h/",
          "file:///home/kim/a.wav", "mailto:a@b.c"})
        QTest::newRow(text) << QByteArray(text);
}

void tst_StrictUrl::allowedTextStaysAsItIs()
{
    QFETCH(const QByteArray, text);
    const QUrl url = urlAsItStands(QString::fromUtf8(text));
    QVERIFY(url.isValid());
    QCOMPARE(url.toEncoded(), text);
}

void tst_StrictUrl::everyOtherCharacterIsRefused_data()
{
    QTest::addColumn<QString>("character");
    for (int code = 0; code < 128; ++code)
        if (!QByteArray("-._~!$&'()*+,;=:@/?#").contains(char(code)) && !QChar(code).isLetterOrNumber())
            QTest::addRow("0x%02x", code) << QString(QChar(code));
    for (const char *const text : {"é", "音", "🎸", "%", "%4", "%zz", "%4g", "#a#b"})
        QTest::newRow(text) << QString(text);
    QTest::newRow("line break at the end") << "x\n";
    QTest::newRow("half of a pair") << QString(QChar(0xd83c));
}

void tst_StrictUrl::everyOtherCharacterIsRefused()
{
    QFETCH(const QString, character);
    QVERIFY(!urlAsItStands("http://192.168.1.5:80/download?filename=" + character + "&format=wav").isValid());
    QVERIFY(!urlAsItStands("http://192.168.1.5:80/down" + character + "/x").isValid() || character == u"#a#b");
    QVERIFY(!urlAsItStands("http://192.168.1.5:80/#" + character).isValid());
}

void tst_StrictUrl::textThatIsNoUrlIsRefused_data()
{
    QTest::addColumn<QString>("text");
    for (const char *const text :
         {"", "http://h:99999/", "http://[::1/", "http://[x]/", "http://[::1]x/", "1http://h/"})
        QTest::newRow(*text ? text : "nothing") << QString(text);
    QTest::newRow("a million spaces") << "http://h/" + QString(1'000'000, ' ');
    QTest::newRow("a million letters and a space") << "http://h/" + QString(1'000'000, 'x') + ' ';
}

void tst_StrictUrl::textThatIsNoUrlIsRefused()
{
    QFETCH(const QString, text);
    QVERIFY(!urlAsItStands(text).isValid());
}

QTEST_GUILESS_MAIN(tst_StrictUrl)
#include "tst_StrictUrl.moc"

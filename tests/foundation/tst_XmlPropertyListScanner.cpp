#include <QWPlatform/foundation/lists/XmlPropertyListScanner.h>

#include <QTest>

using platform::XmlPropertyListScanner;
using Token = XmlPropertyListScanner::Token;

namespace
{
/// One word for each token, such as "+dict" for a start and "!" for an error.
QString tokensOf(std::string_view xml)
{
    constexpr const char *signs = "+~-'[.!";
    XmlPropertyListScanner scanner(xml);
    QStringList tokens;
    for (Token token = scanner.next();; token = scanner.next()) {
        const std::string_view text = scanner.text();
        tokens << QChar(signs[static_cast<int>(token)]) +
                      QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
        if (token == Token::Finished || token == Token::Error)
            return tokens.join(u' ');
    }
}
} // namespace

class tst_XmlPropertyListScanner : public QObject
{
    Q_OBJECT

private slots:
    void textIsCutIntoTokens()
    {
        QCOMPARE(
            tokensOf("\xEF\xBB\xBF<?xml?><!DOCTYPE plist><plist version='1'><dict/>a&amp;b<![CDATA[<c>]]></plist>"),
            "+plist ~dict 'a&amp;b [<c> -plist .");
        QCOMPARE(tokensOf(""), ".");
        QCOMPARE(tokensOf("<"), "!");
        QCOMPARE(tokensOf("</ a>"), "!");
        QCOMPARE(tokensOf("<!ELEMENT a>"), "!");
        QCOMPARE(tokensOf("<!DOCTYPE a [ ]>"), "!");
        QCOMPARE(tokensOf("<![CDATA[a]]"), "!");
    }

    void errorsStay()
    {
        XmlPropertyListScanner scanner("<<a>");
        QCOMPARE(scanner.next(), Token::Error);
        QCOMPARE(scanner.next(), Token::Error);
    }

    void blankTextIsPassedOverOnRequest()
    {
        XmlPropertyListScanner scanner(" \r\n\t<a> x ");
        QCOMPARE(scanner.nextTag(), Token::Start);
        QCOMPARE(scanner.nextTag(), Token::Text);
        QCOMPARE(scanner.text(), std::string_view("x "));
    }

    void decodingIsNeededForEntitiesAndLineEndsOnly()
    {
        char out[16];
        XmlPropertyListScanner scanner("plain<a/>a&lt;\r\n\r<a/>&#x20AC;<a/>&nbsp;");
        QCOMPARE(scanner.next(), Token::Text);
        QVERIFY(!scanner.needsDecoding());
        scanner.next();
        QCOMPARE(scanner.next(), Token::Text);
        QVERIFY(scanner.needsDecoding());
        QCOMPARE(std::string_view(out, static_cast<size_t>(scanner.decodeTo(out))), std::string_view("a<\n\n"));
        scanner.next();
        QCOMPARE(scanner.next(), Token::Text);
        QCOMPARE(std::string_view(out, static_cast<size_t>(scanner.decodeTo(out))), std::string_view("\u20AC"));
        scanner.next();
        QCOMPARE(scanner.next(), Token::Text);
        QCOMPARE(scanner.decodeTo(out), std::ptrdiff_t(-1));
    }
};

QTEST_GUILESS_MAIN(tst_XmlPropertyListScanner)
#include "tst_XmlPropertyListScanner.moc"

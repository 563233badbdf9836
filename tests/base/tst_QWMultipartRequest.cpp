#include <QWBase/requests/QWMultipartRequest.h>

#include <QTest>

namespace
{
/// The boundary that the request's header names; "" when there is none.
QByteArray boundaryOf(const platform::UrlRequest &request)
{
    const QByteArray prefix = "multipart/form-data; boundary=";
    for (const auto &[name, value] : request.headers)
        if (name == "Content-Type" && value.startsWith(prefix))
            return value.mid(prefix.size());
    return {};
}
} // namespace

class tst_QWMultipartRequest : public QObject
{
    Q_OBJECT

private slots:
    void formIsSentByPost();
    void bodyHoldsTheFieldsInOrder();
    void namesCannotBreakOutOfTheirQuotes();
    void formWithoutFieldsIsClosed();
    void boundariesDiffer();
};

void tst_QWMultipartRequest::formIsSentByPost()
{
    const auto request = qw::requestWithURLMultipartForm(QUrl("http://x/y?z"), {{"a", "1"}});
    QCOMPARE(request.url, QUrl("http://x/y?z"));
    QCOMPARE(request.method, QByteArray("POST"));
    const QByteArray boundary = boundaryOf(request);
    QVERIFY(!boundary.isEmpty() && boundary.size() <= 70);
}

void tst_QWMultipartRequest::bodyHoldsTheFieldsInOrder()
{
    const auto request =
        qw::requestWithURLMultipartForm(QUrl("http://x"), {{"text", "zwei\r\nZeilen ü"}, {"name", ""}});
    const QByteArray line = "--" + boundaryOf(request);
    QCOMPARE(request.body, line + "\r\nContent-Disposition: form-data; name=\"name\"\r\n\r\n\r\n" + line +
                               "\r\nContent-Disposition: form-data; name=\"text\"\r\n\r\nzwei\r\nZeilen ü\r\n" + line +
                               "--\r\n");
}

void tst_QWMultipartRequest::namesCannotBreakOutOfTheirQuotes()
{
    const auto request = qw::requestWithURLMultipartForm(QUrl("http://x"), {{"a\"; x=\"\r\nHeader: ü", "1"}});
    QVERIFY2(request.body.contains("name=\"a%22; x=%22%0D%0AHeader: ü\"\r\n\r\n1\r\n"), request.body.constData());
}

void tst_QWMultipartRequest::formWithoutFieldsIsClosed()
{
    const auto request = qw::requestWithURLMultipartForm(QUrl("http://x"), {});
    QCOMPARE(request.body, "--" + boundaryOf(request) + "--\r\n");
}

void tst_QWMultipartRequest::boundariesDiffer()
{
    const auto first = qw::requestWithURLMultipartForm(QUrl("http://x"), {});
    // A field that quotes an earlier form must not end its own.
    const auto second = qw::requestWithURLMultipartForm(QUrl("http://x"), {{"a", QString::fromUtf8(first.body)}});
    QVERIFY(boundaryOf(first) != boundaryOf(second));
    QCOMPARE(second.body.count(QByteArray("--" + boundaryOf(second))), 2);
}

QTEST_APPLESS_MAIN(tst_QWMultipartRequest)
#include "tst_QWMultipartRequest.moc"

#include <QWBase/requests/QWDataDigest.h>

#include <QTest>

class tst_QWDataDigest : public QObject
{
    Q_OBJECT

private slots:
    void digestIsLowerCaseHexadecimal_data();
    void digestIsLowerCaseHexadecimal();
};

void tst_QWDataDigest::digestIsLowerCaseHexadecimal_data()
{
    QTest::addColumn<QByteArray>("data");
    QTest::addColumn<QString>("digest");
    // The test suite of RFC 1321.
    QTest::newRow("empty") << QByteArray() << "d41d8cd98f00b204e9800998ecf8427e";
    QTest::newRow("abc") << QByteArray("abc") << "900150983cd24fb0d6963f7d28e17f72";
    QTest::newRow("two blocks") << QByteArray("1234567890").repeated(8) << "57edf4a22be3c955ac49da2e2107b67a";
}

void tst_QWDataDigest::digestIsLowerCaseHexadecimal()
{
    QFETCH(QByteArray, data);
    QTEST(qw::md5String(data), "digest");
}

QTEST_APPLESS_MAIN(tst_QWDataDigest)
#include "tst_QWDataDigest.moc"

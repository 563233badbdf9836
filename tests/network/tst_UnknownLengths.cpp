#include "DownloadListener.h"

#include <QWPlatform/linux/network/LinuxUrlDownloads.h>

#include <simulators/HttpServer.h>

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

using namespace platform;
using namespace std::chrono_literals;

namespace
{
constexpr qsizetype fileSize = 150'000;

/// All of it in one chunk; without the last one, which is empty, the connection is lost.
QByteArray chunked(const QByteArray &body, bool hasEnd)
{
    return "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\nAccept-Ranges: bytes\r\nETag: \"v1\"\r\n\r\n" +
           QByteArray::number(body.size(), 16) + "\r\n" + body + "\r\n" + (hasEnd ? "0\r\n\r\n" : "");
}

HttpReply partOf(const QByteArray &body, qsizetype first, qsizetype most, const QByteArray &length)
{
    HttpReply part = HttpReply::text(body.mid(first, most));
    part.status = 206;
    const QByteArray last = QByteArray::number(std::min(first + most, body.size()) - 1);
    part.headers = {{"ETag", "\"v1\""},
                    {"Content-Range", "bytes " + QByteArray::number(first) + '-' + last + '/' + length}};
    return part;
}
} // namespace

/// Files whose length no first answer tells, over connections that are lost.
class tst_UnknownLengths : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QVERIFY(m_server.listen()); }
    void fileIsWholeOnceSomebodySaysSo_data();
    void fileIsWholeOnceSomebodySaysSo();
    void refusalWithAnotherLengthFails_data();
    void refusalWithAnotherLengthFails();

private:
    HttpReply _reply(const HttpRequest &request) const;
    void _run(DownloadListener &listener, const QString &destination);

    const QByteArray m_body = QByteArray(fileSize / 2, 'a') + QByteArray(fileSize / 2, 'b');
    qsizetype m_sent = 0;    ///< Bytes of the first answer.
    bool m_hasEnd = false;   ///< Of the first answer.
    qsizetype m_most = 0;    ///< Bytes of each further one.
    QByteArray m_partLength; ///< As these tell it.
    QByteArray m_refusal;    ///< "Content-Range" of the answer when nothing is left.
    HttpServer m_server{[this](const HttpRequest &request) { return _reply(request); }};
};

HttpReply tst_UnknownLengths::_reply(const HttpRequest &request) const
{
    if (!request.headers.contains("range")) {
        HttpReply first;
        first.raw = chunked(m_body.first(m_sent), m_hasEnd);
        return first;
    }
    const qsizetype asked = request.headers.value("range").mid(qstrlen("bytes=")).chopped(1).toLongLong();
    if (asked < m_body.size())
        return partOf(m_body, asked, m_most, m_partLength);
    HttpReply refusal = HttpReply::failure(416);
    if (!m_refusal.isEmpty())
        refusal.headers = {{"Content-Range", m_refusal}};
    return refusal;
}

void tst_UnknownLengths::_run(DownloadListener &listener, const QString &destination)
{
    LinuxUrlDownloads downloads({.patience = {.firstPause = 1ms}});
    listener.start(downloads, m_server.url("/take"), destination);
    QTRY_VERIFY_WITH_TIMEOUT(listener.ended(), 20'000);
}

void tst_UnknownLengths::fileIsWholeOnceSomebodySaysSo_data()
{
    QTest::addColumn<qsizetype>("sent");
    QTest::addColumn<bool>("hasEnd");
    QTest::addColumn<qsizetype>("most");
    QTest::addColumn<QByteArray>("partLength");
    const QByteArray told = QByteArray::number(fileSize);
    QTest::newRow("at once") << fileSize << true << qsizetype(0) << QByteArray();
    QTest::newRow("the rest at once") << qsizetype(50'000) << false << fileSize << told;
    QTest::newRow("the rest in parts") << qsizetype(50'000) << false << qsizetype(40'000) << told;
    QTest::newRow("the rest at once, never told") << qsizetype(50'000) << false << fileSize << QByteArray("*");
    QTest::newRow("the rest in parts, never told")
        << qsizetype(50'000) << false << qsizetype(40'000) << QByteArray("*");
    QTest::newRow("only its end lost") << fileSize << false << qsizetype(0) << QByteArray();
}

void tst_UnknownLengths::fileIsWholeOnceSomebodySaysSo()
{
    QFETCH(const qsizetype, sent);
    QFETCH(const bool, hasEnd);
    QFETCH(const qsizetype, most);
    QFETCH(const QByteArray, partLength);
    m_sent = sent;
    m_hasEnd = hasEnd;
    m_most = most;
    m_partLength = partLength;
    m_refusal = "bytes */" + QByteArray::number(fileSize);
    const QTemporaryDir folder;
    DownloadListener listener;
    _run(listener, folder.filePath("Take 1.wav"));
    QCOMPARE(listener.calls, QStringList({"response", "data", "finish"}));
    QCOMPARE(listener.received, fileSize);
    QVERIFY(contentsOf(folder.filePath("Take 1.wav")) == m_body);
}

void tst_UnknownLengths::refusalWithAnotherLengthFails_data()
{
    QTest::addColumn<QByteArray>("refusal");
    QTest::newRow("none") << QByteArray();
    QTest::newRow("shorter") << QByteArray("bytes */149999");
    QTest::newRow("longer") << QByteArray("bytes */150001");
    QTest::newRow("unknown") << QByteArray("bytes */*");
    QTest::newRow("a range") << QByteArray("bytes 0-149999/150000");
    QTest::newRow("garbage") << QByteArray("150000");
}

void tst_UnknownLengths::refusalWithAnotherLengthFails()
{
    QFETCH(const QByteArray, refusal);
    m_sent = fileSize;
    m_hasEnd = false;
    m_refusal = refusal;
    const QTemporaryDir folder;
    DownloadListener listener;
    _run(listener, folder.filePath("Take 1.wav"));
    QCOMPARE(listener.failure, "The server answered with status 416.");
    QCOMPARE(QDir(folder.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot), QStringList());
}

QTEST_GUILESS_MAIN(tst_UnknownLengths)
#include "tst_UnknownLengths.moc"

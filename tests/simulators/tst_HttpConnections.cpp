#include "RawClient.h"

#include <sys/resource.h>

using namespace std::chrono_literals;

/// Connections that end, wait or come by the thousand.
class tst_HttpConnections : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QVERIFY(m_server.listen()); }

    void silenceIsKept_data();
    void silenceIsKept();
    void answerMayComeLater();
    void clientsMayGoBeforeTheAnswer();
    void lastByteIsTold();
    void closingCutsEverything();
    void thousandsConnectAtOnce();

private:
    HttpServer m_server;
};

void tst_HttpConnections::silenceIsKept_data()
{
    QTest::addColumn<HttpReply>("reply");
    QTest::addColumn<QByteArray>("end");
    HttpReply never;
    never.neverAnswer = true;
    QTest::newRow("never answers") << never << QByteArray();
    HttpReply stalls = digits();
    stalls.cutAfter = 4;
    stalls.stayAfterPieces = true;
    QTest::newRow("stalls") << stalls << QByteArray("\r\n\r\n0123");
}

void tst_HttpConnections::silenceIsKept()
{
    QFETCH(const HttpReply, reply);
    QFETCH(const QByteArray, end);
    m_server.answer("/silent", reply);
    m_server.answer("/digits", digits());
    RawClient client(m_server, get("/silent"));
    const auto hasAsked = [this] {
        return !m_server.requests().empty() && m_server.requests().back().path == u"/silent";
    };
    QTRY_VERIFY(!client.hasEnded() && hasAsked());
    QTRY_VERIFY((client.hasEnded(), client.received.endsWith(end)));
    exchanged(m_server, get("/digits")); // the server has had its turns meanwhile
    QVERIFY(!client.hasEnded());
    QVERIFY(client.received.endsWith(end));
    QVERIFY(client.received.isEmpty() == end.isEmpty());
}

void tst_HttpConnections::answerMayComeLater()
{
    HttpReply::Answer answer;
    HttpReply reply;
    reply.later = [&answer](const HttpReply::Answer &taker) { answer = taker; };
    m_server.answer("/later", reply);
    m_server.answer("/digits", digits());
    RawClient client(m_server, get("/later"));
    QTRY_VERIFY(answer);
    exchanged(m_server, get("/digits")); // others are not held up
    QVERIFY(!client.hasEnded());
    answer(HttpReply::text("at last"));
    QTRY_VERIFY(client.hasEnded());
    QCOMPARE(client.body(), QByteArray("at last"));
}

void tst_HttpConnections::clientsMayGoBeforeTheAnswer()
{
    HttpReply::Answer answer;
    HttpReply reply;
    reply.later = [&answer](const HttpReply::Answer &taker) { answer = taker; };
    m_server.answer("/later", reply);
    {
        RawClient client(m_server, get("/later"));
        QTRY_VERIFY(answer);
    }
    m_server.answer("/digits", digits());
    exchanged(m_server, get("/digits"));
    answer(HttpReply::text("nobody there"));
    QVERIFY(exchanged(m_server, get("/digits")).endsWith("0123456789"));
}

void tst_HttpConnections::lastByteIsTold()
{
    int sent = 0;
    HttpReply reply = digits();
    reply.sent = [&sent] { ++sent; };
    reply.cutAfter = 4;
    m_server.answer("/told", reply);
    QVERIFY(exchanged(m_server, get("/told")).endsWith("0123"));
    QCOMPARE(sent, 1);
}

void tst_HttpConnections::closingCutsEverything()
{
    HttpServer server;
    QVERIFY(server.listen());
    qint64 furthest = 0;
    server.answer("/endless", counted(HttpBody::unknownSize, furthest));
    RawClient client(server, get("/endless"));
    QTRY_VERIFY((client.hasEnded(), !client.received.isEmpty()));
    const QString address = server.address();
    server.close();
    QTRY_VERIFY(client.hasEnded());
    RawClient late(server, get("/endless"));
    QTRY_VERIFY(late.hasEnded());
    QCOMPARE(late.received, QByteArray());
    QVERIFY(server.listen()); // it may begin anew
}

void tst_HttpConnections::thousandsConnectAtOnce()
{
    rlimit files{};
    QCOMPARE(::getrlimit(RLIMIT_NOFILE, &files), 0);
    files.rlim_cur = files.rlim_max;
    QCOMPARE(::setrlimit(RLIMIT_NOFILE, &files), 0);
    const size_t count = std::min<size_t>(2000, (files.rlim_cur - 100) / 2); // both ends are here
    m_server.answer("/digits", digits());
    std::vector<std::unique_ptr<RawClient>> clients;
    const int before = m_server.connections();
    while (clients.size() < count)
        clients.push_back(std::make_unique<RawClient>(m_server, QByteArray()));
    QTRY_COMPARE_WITH_TIMEOUT(m_server.connections() - before, static_cast<int>(count), 60'000);
    for (const auto &client : clients)
        client->socket.write(get("/digits"));
    for (const auto &client : clients) {
        QTRY_VERIFY_WITH_TIMEOUT(client->hasEnded(), 60'000);
        QCOMPARE(client->body(), QByteArray("0123456789"));
    }
}

QTEST_GUILESS_MAIN(tst_HttpConnections)
#include "tst_HttpConnections.moc"

#include "DownloadListener.h"

#include <QWPlatform/linux/network/LinuxUrlDownloads.h>

#include <simulators/HttpServer.h>

#include <QDir>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

using namespace platform;
using namespace std::chrono_literals;

namespace
{
using Header = std::pair<QByteArray, QByteArray>;
using Headers = std::vector<Header>;

constexpr auto taggedVersion = "\"v1\"";
constexpr auto dateOfVersion = "Sat, 03 Jan 2026 10:00:00 GMT";

const Headers tagged{{"Accept-Ranges", "bytes"}, {"ETag", taggedVersion}};

QByteArray madeUp(qsizetype size)
{
    QByteArray bytes(size, Qt::Uninitialized);
    QRandomGenerator random(1);
    for (char &byte : bytes)
        byte = static_cast<char>(random.generate());
    return bytes;
}

qsizetype firstAskedOf(const HttpRequest &request)
{
    return request.headers.value("range").mid(qstrlen("bytes=")).chopped(1).toLongLong();
}
} // namespace

Q_DECLARE_METATYPE(Headers)

/// A server that loses connections, and what a download makes of it.
class tst_LostConnections : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QVERIFY(m_server.listen()); }
    void init();
    void cleanup() { m_listener.reset(); }

    void lostConnectionIsContinued_data();
    void lostConnectionIsContinued();
    void continuationAsksForTheSameVersion();
    void changedFileBeginsAnew();
    void withoutASafeOfferItFails_data();
    void withoutASafeOfferItFails();
    void partThatDoesNotFitFails_data();
    void partThatDoesNotFitFails();
    void partThatNobodyAskedForFails();
    void refusalOfTheRestFails();
    void serverThatStaysAwayFails();
    void serverThatComesBackContinues();
    void serverThatSendsNothingNewFails();
    void serverThatSendsByteByByteFails();
    void serverThatBeginsAnewEachTimeFails();
    void silenceIsContinued();
    void silenceThatGoesOnFails();
    void serverThatFallsSilentAgainAndAgainFails();
    void cancelInAPauseLeavesNothing();

private:
    HttpReply _reply(const HttpRequest &request);
    HttpReply _rest(const HttpRequest &request) const;
    void _run();
    QUrl _switchOffAfterTheFirstAnswer();
    QStringList _entries() const
    {
        return QDir(m_folder->path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }
    QString _destination() const { return m_folder->filePath("Take 1.wav"); }
    /// Qt itself repeats a request whose connection ends before it has read of an answer.
    bool _hasAskedAbout(int times) const { return _requests() >= times && _requests() <= 3 * times; }
    int _requests() const { return int(m_server.requests().size() - m_requestsBefore); }

    const QByteArray m_body = madeUp(300'000);
    QList<qsizetype> m_cuts; ///< Bytes of the body after which each answer ends, in turn; then none does.
    Headers m_headers;
    std::function<HttpReply(const HttpRequest &)> m_continue; ///< Instead of the rest, when set.
    bool m_isSilent = false;                                  ///< Instead of closing.
    int m_answers = 0;
    size_t m_requestsBefore = 0;
    LinuxUrlDownloads::Limits m_limits;
    std::unique_ptr<LinuxUrlDownloads> m_downloads;
    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<DownloadListener> m_listener;
    HttpServer m_server{[this](const HttpRequest &request) { return _reply(request); }};
};

void tst_LostConnections::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_listener = std::make_unique<DownloadListener>();
    m_cuts = {100'000};
    m_headers = tagged;
    m_continue = {};
    m_isSilent = false;
    m_answers = 0;
    m_requestsBefore = m_server.requests().size();
    m_limits = {};
    m_limits.patience.firstPause = 1ms;
}

HttpReply tst_LostConnections::_reply(const HttpRequest &request)
{
    HttpReply reply = request.headers.contains("range") && m_continue ? m_continue(request) : _rest(request);
    if (m_answers < m_cuts.size())
        reply.cutAfter = m_cuts[m_answers];
    ++m_answers;
    reply.stayAfterPieces = m_isSilent;
    return reply;
}

HttpReply tst_LostConnections::_rest(const HttpRequest &request) const
{
    HttpReply reply = HttpReply::text(m_body);
    reply.headers = m_headers;
    if (!request.headers.contains("range"))
        return reply;
    const qsizetype first = firstAskedOf(request);
    reply.status = 206;
    reply.body = m_body.mid(first);
    reply.headers.emplace_back("Content-Range", "bytes " + QByteArray::number(first) + '-' +
                                                    QByteArray::number(m_body.size() - 1) + '/' +
                                                    QByteArray::number(m_body.size()));
    return reply;
}

void tst_LostConnections::_run()
{
    m_downloads = std::make_unique<LinuxUrlDownloads>(m_limits);
    m_listener->start(*m_downloads, m_server.url("/download"), _destination());
    QTRY_VERIFY_WITH_TIMEOUT(m_listener->ended(), 20'000);
}

/// Returns when the download has heard of the loss, or is about to; what was asked for.
QUrl tst_LostConnections::_switchOffAfterTheFirstAnswer()
{
    auto server = std::make_unique<HttpServer>([this](const HttpRequest &request) { return _reply(request); });
    const bool listens = server->listen();
    const QUrl url = server->url("/download");
    m_downloads = std::make_unique<LinuxUrlDownloads>(m_limits);
    m_listener->start(*m_downloads, url, _destination());
    if (!listens || !QTest::qWaitFor([&] { return m_listener->received == m_cuts.front(); }))
        qFatal("Nothing arrives");
    return url;
}

void tst_LostConnections::lostConnectionIsContinued_data()
{
    QTest::addColumn<QList<qsizetype>>("cuts");
    QTest::addColumn<Headers>("headers");
    QTest::newRow("once") << QList<qsizetype>{100'000} << tagged;
    QTest::newRow("several times") << QList<qsizetype>{1, 50'000, 1, 200'000, 0, 7} << tagged;
    QTest::newRow("before the first byte") << QList<qsizetype>{0} << tagged;
    QTest::newRow("before the last byte") << QList<qsizetype>{299'999} << tagged;
    QTest::newRow("version by its date") << QList<qsizetype>{100'000}
                                         << Headers{{"Accept-Ranges", "bytes"}, {"Last-Modified", dateOfVersion}};
    QTest::newRow("date well before") << QList<qsizetype>{100'000}
                                      << Headers{{"accept-ranges", "Bytes"},
                                                 {"Last-Modified", dateOfVersion},
                                                 {"Date", "Sat, 03 Jan 2026 10:00:01 GMT"}};
    QTest::newRow("weak tag and date") << QList<qsizetype>{100'000}
                                       << Headers{{"Accept-Ranges", "bytes"},
                                                  {"ETag", "W/\"v1\""},
                                                  {"Last-Modified", dateOfVersion}};
}

void tst_LostConnections::lostConnectionIsContinued()
{
    QFETCH(const QList<qsizetype>, cuts);
    m_cuts = cuts;
    QFETCH(const Headers, headers);
    m_headers = headers;
    _run();
    QCOMPARE(m_listener->calls, QStringList({"response", "data", "finish"}));
    QCOMPARE(m_listener->expected, m_body.size());
    QCOMPARE(m_listener->received, m_body.size());
    QVERIFY(contentsOf(_destination()) == m_body);
    QCOMPARE(_requests(), cuts.size() + 1);
}

void tst_LostConnections::continuationAsksForTheSameVersion()
{
    _run();
    const auto &headers = m_server.requests().back().headers;
    QCOMPARE(headers.value("range"), "bytes=100000-");
    QCOMPARE(headers.value("if-range"), taggedVersion);
    QVERIFY(!m_server.requests()[m_requestsBefore].headers.contains("range"));
}

/// Its beginning must not be joined with the rest of another.
void tst_LostConnections::changedFileBeginsAnew()
{
    const QByteArray changed = madeUp(150'000) + "changed";
    m_continue = [&](const HttpRequest &) { return HttpReply::text(changed); };
    _run();
    QCOMPARE(m_listener->calls, QStringList({"response", "data", "response", "data", "finish"}));
    QCOMPARE(m_listener->expected, changed.size());
    QCOMPARE(m_listener->received, changed.size());
    QVERIFY(contentsOf(_destination()) == changed);
}

void tst_LostConnections::withoutASafeOfferItFails_data()
{
    QTest::addColumn<Headers>("headers");
    const Header ranges("Accept-Ranges", "bytes");
    QTest::newRow("no word of ranges") << Headers{{"ETag", taggedVersion}};
    QTest::newRow("no ranges") << Headers{{"Accept-Ranges", "none"}, {"ETag", taggedVersion}};
    QTest::newRow("no version") << Headers{ranges};
    QTest::newRow("weak tag") << Headers{ranges, {"ETag", "W/\"v1\""}};
    QTest::newRow("changed as it was sent")
        << Headers{ranges, {"Last-Modified", dateOfVersion}, {"Date", dateOfVersion}};
    QTest::newRow("date that is none") << Headers{ranges, {"Last-Modified", "yesterday"}};
}

void tst_LostConnections::withoutASafeOfferItFails()
{
    QFETCH(const Headers, headers);
    m_headers = headers;
    _run();
    QCOMPARE(m_listener->calls, QStringList({"response", "data", "fail"}));
    QVERIFY(!m_listener->failure.isEmpty());
    QCOMPARE(_requests(), 1);
    QCOMPARE(_entries(), QStringList());
}

void tst_LostConnections::partThatDoesNotFitFails_data()
{
    QTest::addColumn<QByteArray>("range");
    QTest::addColumn<QByteArray>("tag");
    QTest::newRow("no range") << QByteArray() << QByteArray(taggedVersion);
    QTest::newRow("another beginning") << QByteArray("bytes 99999-299999/300000") << QByteArray(taggedVersion);
    QTest::newRow("another length") << QByteArray("bytes 100000-299999/300001") << QByteArray(taggedVersion);
    QTest::newRow("beyond the end") << QByteArray("bytes 100000-300000/300000") << QByteArray(taggedVersion);
    QTest::newRow("backwards") << QByteArray("bytes 100000-99999/300000") << QByteArray(taggedVersion);
    QTest::newRow("another unit") << QByteArray("samples 100000-299999/300000") << QByteArray(taggedVersion);
    QTest::newRow("huge numbers") << QByteArray("bytes 99999999999999999999-1/1") << QByteArray(taggedVersion);
    QTest::newRow("garbage") << QByteArray("bytes */*") << QByteArray(taggedVersion);
    QTest::newRow("another version") << QByteArray("bytes 100000-299999/300000") << QByteArray("\"v2\"");
}

void tst_LostConnections::partThatDoesNotFitFails()
{
    QFETCH(const QByteArray, range);
    QFETCH(const QByteArray, tag);
    m_continue = [&](const HttpRequest &) {
        HttpReply reply = HttpReply::text(m_body.mid(100'000));
        reply.status = 206;
        reply.headers = {{"ETag", tag}};
        if (!range.isEmpty())
            reply.headers.emplace_back("Content-Range", range);
        return reply;
    };
    _run();
    QCOMPARE(m_listener->calls, QStringList({"response", "data", "fail"}));
    QCOMPARE(m_listener->failure, "The server answered with status 206.");
    QCOMPARE(_entries(), QStringList());
}

void tst_LostConnections::partThatNobodyAskedForFails()
{
    HttpReply part = HttpReply::text("part");
    part.status = 206;
    m_server.answer("/part", part);
    LinuxUrlDownloads downloads;
    m_listener->start(downloads, m_server.url("/part"), _destination());
    QTRY_VERIFY(m_listener->ended());
    QCOMPARE(m_listener->calls, QStringList("fail"));
    QCOMPARE(_entries(), QStringList());
}

void tst_LostConnections::refusalOfTheRestFails()
{
    m_continue = [](const HttpRequest &) { return HttpReply::failure(416); };
    _run();
    QCOMPARE(m_listener->failure, "The server answered with status 416.");
    QCOMPARE(_entries(), QStringList());
}

void tst_LostConnections::serverThatStaysAwayFails()
{
    _switchOffAfterTheFirstAnswer();
    QTRY_VERIFY(m_listener->ended());
    QVERIFY(!m_listener->failure.isEmpty());
    QCOMPARE(_entries(), QStringList());
}

void tst_LostConnections::serverThatComesBackContinues()
{
    m_limits.patience.fruitlessTries = 10'000;
    m_limits.patience.tries = 10'000;
    const QUrl url = _switchOffAfterTheFirstAnswer();
    HttpServer again([this](const HttpRequest &request) { return _reply(request); });
    QVERIFY(again.listen(static_cast<quint16>(url.port())));
    QTRY_VERIFY(m_listener->ended());
    QCOMPARE(m_listener->calls, QStringList({"response", "data", "finish"}));
    QVERIFY(contentsOf(_destination()) == m_body);
}

void tst_LostConnections::serverThatSendsNothingNewFails()
{
    m_limits.patience.fruitlessTries = 3;
    m_cuts = {100'000, 0, 0, 0, 0, 0, 0, 0, 0};
    _run();
    QCOMPARE(m_listener->calls, QStringList({"response", "data", "fail"}));
    QVERIFY(_hasAskedAbout(5)); // the file, its rest, and three times more
    QCOMPARE(_entries(), QStringList());
}

void tst_LostConnections::serverThatSendsByteByByteFails()
{
    m_limits.patience.tries = 10;
    m_cuts = QList<qsizetype>(100, 1);
    _run();
    QCOMPARE(m_listener->calls.back(), "fail");
    QVERIFY(_hasAskedAbout(11));
    QCOMPARE(_entries(), QStringList());
}

/// Whoever ignores ranges sends the same beginning again and again.
void tst_LostConnections::serverThatBeginsAnewEachTimeFails()
{
    m_limits.patience.fruitlessTries = 3;
    m_cuts = QList<qsizetype>(100, 100'000);
    m_continue = [this](const HttpRequest &) {
        HttpReply whole = HttpReply::text(m_body);
        whole.headers = m_headers;
        return whole;
    };
    _run();
    QCOMPARE(m_listener->calls.back(), "fail");
    QVERIFY(_hasAskedAbout(5));
}

/// As when the machine has left the wireless network for a moment.
void tst_LostConnections::silenceIsContinued()
{
    m_limits.inactivity = 2s;
    m_isSilent = true;
    _run();
    QCOMPARE(m_listener->calls, QStringList({"response", "data", "finish"}));
    QVERIFY(contentsOf(_destination()) == m_body);
    QCOMPARE(_requests(), 2);
}

void tst_LostConnections::silenceThatGoesOnFails()
{
    m_limits.inactivity = 2s;
    m_limits.inactivityAfterSilence = 200ms;
    m_isSilent = true;
    m_cuts = {100'000, 0, 0, 0};
    _run();
    QCOMPARE(m_listener->failure, "The request timed out.");
    QCOMPARE(_requests(), 2);
    QCOMPARE(_entries(), QStringList());
}

void tst_LostConnections::serverThatFallsSilentAgainAndAgainFails()
{
    m_limits.inactivity = 2s;
    m_limits.patience.silences = 1;
    m_isSilent = true;
    m_cuts = {100'000, 10, 10, 10};
    _run();
    QCOMPARE(m_listener->failure, "The request timed out.");
    QCOMPARE(_requests(), 2);
    QCOMPARE(_entries(), QStringList());
}

void tst_LostConnections::cancelInAPauseLeavesNothing()
{
    m_limits.patience.firstPause = 1h;
    m_downloads = std::make_unique<LinuxUrlDownloads>(m_limits);
    m_listener->start(*m_downloads, m_server.url("/download"), _destination());
    QTRY_COMPARE(m_listener->received, 100'000);
    m_listener->download.reset();
    m_downloads.reset(); // which waits for the thread
    QCOMPARE(m_listener->calls, QStringList({"response", "data"}));
    QCOMPARE(_entries(), QStringList());
}

QTEST_GUILESS_MAIN(tst_LostConnections)
#include "tst_LostConnections.moc"

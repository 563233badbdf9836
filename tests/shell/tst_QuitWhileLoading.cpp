// A host that quits while the network owes it an answer is gone: a real process (this program again, in an application
// bundle of its own) against servers on the loopback interface that are silent, slow, cut short or lie.
#include <QWBase/QWApplication.h>
#include <QWPlatform/System.h>
#include <QWPlatform/foundation/BackgroundWork.h>
#include <QWPlatform/foundation/Locations.h>
#include <QWPlatform/machine/SystemServices.h>
#include <QWPlatform/network/UrlLoader.h>
#include <QWPlatform/network/transfers/UrlDownload.h>
#include <QWUtilities/shell/QWManual.h>

#include <simulators/HttpServer.h>

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QSocketNotifier>
#include <QStandardPaths>
#include <QTest>

#include <arpa/inet.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstring>
#include <thread>

using namespace std::chrono_literals;
using platform::System;
using platform::SystemServices;

Q_DECLARE_METATYPE(std::function<HttpReply()>)

namespace
{
constexpr int endOfProcess = 20'000; // milliseconds; loads give up after 30 s of silence, and never without a loop

class HostProcess
{
public:
    HostProcess(const QString &what, const QString &address)
    {
        m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_process.start(QFileInfo("/proc/self/exe").symLinkTarget(), {"--host", what, address});
    }

    ~HostProcess()
    {
        m_process.kill();
        m_process.waitForFinished();
    }

    void quit() { m_process.write("quit\n"); }
    bool isRunning() const { return m_process.state() != QProcess::NotRunning; }
    bool hasEndedWell() const { return m_process.exitStatus() == QProcess::NormalExit && m_process.exitCode() == 0; }

private:
    QProcess m_process;
};

/// An address whose machine takes no connection and refuses none, as one behind a firewall.
class BlackHole
{
public:
    BlackHole()
    {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        auto *const any = reinterpret_cast<sockaddr *>(&address);
        if (::bind(m_listener, any, size) != 0 || ::listen(m_listener, 0) != 0 ||
            ::getsockname(m_listener, any, &size) != 0)
            qFatal("There is no port");
        m_port = ntohs(address.sin_port);
        for (const int socket : m_waiting) // nobody accepts them, so that there is room for no other
            ::connect(socket, any, size);
    }

    ~BlackHole()
    {
        for (const int socket : m_waiting)
            ::close(socket);
        ::close(m_listener);
    }

    BlackHole(const BlackHole &) = delete;
    BlackHole &operator=(const BlackHole &) = delete;

    QString address() const { return QString("http://127.0.0.1:%1").arg(m_port); }

    /// Someone knocks: the kernel lists a connection to the port that has sent its first packet and got no answer.
    bool isCalled() const
    {
        const QByteArray remote = ":" + QByteArray::number(m_port, 16).toUpper().rightJustified(4, '0') + " 02 ";
        QFile connections("/proc/net/tcp");
        return connections.open(QIODevice::ReadOnly) && connections.readAll().count(remote) > m_waitingUnanswered;
    }

    /// How many of the own ones are not answered either.
    void countOwn()
    {
        m_waitingUnanswered = 0;
        while (isCalled())
            ++m_waitingUnanswered;
    }

private:
    const int m_listener = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const std::array<int, 2> m_waiting = {::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0),
                                          ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0)};
    quint16 m_port = 0;
    int m_waitingUnanswered = 0;
};

HttpReply silent()
{
    HttpReply reply;
    reply.neverAnswer = true;
    return reply;
}

HttpReply slow()
{
    HttpReply reply = HttpReply::text(QByteArray(100'000, 'x'));
    reply.pieceSize = 1;
    reply.pieceDelay = 20ms;
    return reply;
}

HttpReply cutAndSilent()
{
    HttpReply reply = HttpReply::text(QByteArray(100'000, 'x'));
    reply.cutAfter = 500;
    reply.stayAfterPieces = true;
    return reply;
}

/// Announces the whole of a large answer and sends no byte of it.
HttpReply lying()
{
    HttpReply reply = HttpReply::text(QByteArray(3'000'000, 'x'));
    reply.cutAfter = 0;
    reply.stayAfterPieces = true;
    return reply;
}

QString whyNoNamespaces()
{
    if (::geteuid() != 0 || QStandardPaths::findExecutable("unshare").isEmpty())
        return "Namespaces need root and unshare";
    return QProcess::execute("unshare", {"-mn", "mount", "-t", "tmpfs", "none", "/mnt"}) == 0
               ? ""
               : "Nothing may be mounted";
}
} // namespace

class tst_QuitWhileLoading : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void hostThatWaitsForAServerEnds_data();
    void hostThatWaitsForAServerEnds();
    void hostThatWaitsForAConnectionEnds_data();
    void hostThatWaitsForAConnectionEnds();
    void hostThatWaitsForANameEnds_data();
    void hostThatWaitsForANameEnds();
};

void tst_QuitWhileLoading::hostThatWaitsForAServerEnds_data()
{
    QTest::addColumn<QString>("what");
    QTest::addColumn<std::function<HttpReply()>>("reply");
    const std::pair<const char *, std::function<HttpReply()>> replies[] = {
        {"silent", silent}, {"slow", slow}, {"cut", cutAndSilent}, {"lying", lying}};
    for (const char *const what : {"manual", "load", "loads", "thread", "download", "plain", "core"})
        for (const auto &[name, reply] : replies)
            QTest::addRow("%s, %s", what, name) << QString(what) << reply;
}

void tst_QuitWhileLoading::hostThatWaitsForAServerEnds()
{
    QFETCH(const QString, what);
    QFETCH(const std::function<HttpReply()>, reply);
    HttpServer server([&](const HttpRequest &) { return reply(); });
    QVERIFY(server.listen());
    HostProcess host(what, server.address());
    QTRY_VERIFY_WITH_TIMEOUT(!server.requests().empty(), endOfProcess);
    host.quit();
    QTRY_VERIFY_WITH_TIMEOUT(!host.isRunning(), endOfProcess);
    QVERIFY(host.hasEndedWell());
}

void tst_QuitWhileLoading::hostThatWaitsForAConnectionEnds_data()
{
    QTest::addColumn<QString>("what");
    for (const char *const what : {"manual", "load", "download", "plain"})
        QTest::newRow(what) << QString(what);
}

void tst_QuitWhileLoading::hostThatWaitsForAConnectionEnds()
{
    QFETCH(const QString, what);
    BlackHole server;
    server.countOwn();
    HostProcess host(what, server.address());
    QTRY_VERIFY_WITH_TIMEOUT(server.isCalled(), endOfProcess);
    host.quit();
    QTRY_VERIFY_WITH_TIMEOUT(!host.isRunning(), endOfProcess);
    QVERIFY(host.hasEndedWell());
}

void tst_QuitWhileLoading::hostThatWaitsForANameEnds_data()
{
    hostThatWaitsForAConnectionEnds_data();
}

/// The resolver cannot be interrupted; it is told to wait for minutes.
void tst_QuitWhileLoading::hostThatWaitsForANameEnds()
{
    if (const QString reason = whyNoNamespaces(); !reason.isEmpty())
        QSKIP(qPrintable(reason));
    QFETCH(const QString, what);
    QProcess machine;
    machine.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    machine.start("unshare", {"-mn", "python3", QW_SILENT_NAME_SERVER, QFileInfo("/proc/self/exe").symLinkTarget(),
                              "--host", what, "http://support.test"});
    const bool ended = QTest::qWaitFor([&] { return machine.state() == QProcess::NotRunning; }, 2 * endOfProcess);
    machine.kill();
    machine.waitForFinished();
    QVERIFY(ended);
    QCOMPARE(machine.exitStatus(), QProcess::NormalExit);
    QCOMPARE(machine.exitCode(), 0);
}

namespace
{
/// Hears what a download has to say, which here is nothing.
struct Deaf : platform::UrlDownloadObserver
{
};

platform::UrlRequest requestOf(const QString &address)
{
    return {.url = QUrl(address + "/list"), .method = "GET", .headers = {}, .body = {}};
}

void load(const QString &address)
{
    System &system = System::current();
    system.backgroundWork().start([loader = &system.urlLoader(), address]() -> std::function<void()> {
        loader->load(requestOf(address));
        return {};
    });
}

/// A thread of the host's own, of which the library knows nothing.
void loadOnOwnThread(const QString &address)
{
    std::thread([loader = &System::current().urlLoader(), address] { loader->load(requestOf(address)); }).detach();
}

void startWhat(const QString &what, const QString &address)
{
    static Deaf deaf;
    static std::unique_ptr<platform::UrlDownload> download;
    if (what == "manual")
        QWManual::openManual();
    else if (what == "thread")
        loadOnOwnThread(address);
    else if (what == "download")
        download = SystemServices::current().urlDownloads->start(
            {.url = QUrl(address + "/Manual.zip"), .destination = QDir::homePath() + "/Manual.zip"}, deaf);
    else
        load(address);
    if (what == "loads")
        for (int i = 0; i < 10; ++i)
            load(address);
}

int runHost(const QString &what, const QString &address)
{
    System::current().locations().setSupportSite(address);
    QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, QCoreApplication::instance(), &QCoreApplication::quit);
    QMetaObject::invokeMethod(
        QCoreApplication::instance(), [&] { startWhat(what, address); }, Qt::QueuedConnection);
    return QWApplication::sharedApplication() ? QWApplication::exec() : QCoreApplication::exec();
}

template <class Application>
int hostMain(int argc, char **argv)
{
    Application application(argc, argv);
    return runHost(QString(argv[2]), QString(argv[3]));
}
} // namespace

int main(int argc, char **argv)
{
    if (argc == 4 && std::strcmp(argv[1], "--host") == 0) {
        if (std::strcmp(argv[2], "plain") == 0)
            return hostMain<QApplication>(argc, argv);
        if (std::strcmp(argv[2], "core") == 0)
            return hostMain<QCoreApplication>(argc, argv);
        return hostMain<QWApplication>(argc, argv);
    }
    QCoreApplication application(argc, argv);
    tst_QuitWhileLoading test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_QuitWhileLoading.moc"

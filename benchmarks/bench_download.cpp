// A download of 2 GB from a server on the loopback interface, by the library, by a bare QNetworkAccessManager that
// writes to a file, and by curl. Each runs in a process of its own (this program again), which tells what it took.
#include <QWPlatform/System.h>
#include <QWPlatform/machine/SystemServices.h>
#include <QWPlatform/network/transfers/UrlDownload.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>
#include <arpa/inet.h>
#include <array>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace
{
constexpr qint64 sizeOfFile = qint64(2) << 30;
constexpr int rounds = 3;

[[noreturn]] void giveUp(const char *reason)
{
    std::fprintf(stderr, "%s\n", reason);
    std::exit(1);
}

/// Answers each connection with as many bytes as its path says ("/1000"), from a buffer, whatever is asked.
class ByteServer
{
public:
    ByteServer()
    {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        auto *const any = reinterpret_cast<sockaddr *>(&address);
        if (::bind(m_listener, any, size) != 0 || ::listen(m_listener, 8) != 0 ||
            ::getsockname(m_listener, any, &size) != 0)
            giveUp("There is no port");
        m_port = ntohs(address.sin_port);
        m_process = ::fork();
        if (m_process == 0)
            _serve();
    }

    ~ByteServer() { ::kill(m_process, SIGKILL); }
    ByteServer(const ByteServer &) = delete;
    ByteServer &operator=(const ByteServer &) = delete;

    QString url(qint64 length) const { return QString("http://127.0.0.1:%1/%2").arg(m_port).arg(length); }

private:
    [[noreturn]] void _serve() const
    {
        for (;;)
            if (const int connection = ::accept(m_listener, nullptr, nullptr); connection >= 0)
                std::thread(&ByteServer::_answer, connection).detach();
    }

    static void _answer(int connection)
    {
        std::array<char, 4096> request{};
        const ssize_t size = ::recv(connection, request.data(), request.size() - 1, 0);
        long long length = 0;
        if (size <= 0 || std::sscanf(request.data(), "GET /%lld", &length) != 1)
            length = 0;
        const std::string head =
            "HTTP/1.1 200 OK\r\nConnection: close\r\nContent-Length: " + std::to_string(length) + "\r\n\r\n";
        ::send(connection, head.data(), head.size(), MSG_NOSIGNAL);
        const std::vector<char> bytes(1 << 20, 'x');
        for (ssize_t sent = 0; length > 0 && sent >= 0; length -= sent)
            sent = ::send(connection, bytes.data(), static_cast<size_t>(std::min<long long>(length, 1 << 20)),
                          MSG_NOSIGNAL);
        ::shutdown(connection, SHUT_WR);
        while (::recv(connection, request.data(), request.size(), 0) > 0) {
        }
        ::close(connection);
    }

    const int m_listener = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    int m_port = 0;
    pid_t m_process = -1;
};

double megabytesFrom(const char *key)
{
    QFile status("/proc/self/status");
    if (!status.open(QIODevice::ReadOnly))
        giveUp("The process does not know its size");
    const QByteArray text = status.readAll();
    return text.mid(text.indexOf(key) + qstrlen(key)).trimmed().split(' ').front().toDouble() / 1024;
}

void forgetPeak()
{
    QFile peak("/proc/self/clear_refs");
    if (!peak.open(QIODevice::WriteOnly) || peak.write("5") != 1)
        giveUp("The peak cannot be forgotten");
}

/// For how long this thread has waited for a processor that others had, in nanoseconds; the kernel counts it.
qint64 waitedForProcessor()
{
    QFile counts("/proc/thread-self/schedstat");
    return counts.open(QIODevice::ReadOnly) ? counts.readAll().split(' ').value(1).toLongLong() : 0;
}

/// The longest time for which the event loop came to nothing, for want of a processor apart.
class LoopWatch
{
public:
    LoopWatch()
    {
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] { _note(); });
        m_timer.setTimerType(Qt::PreciseTimer);
        m_clock.start();
        m_timer.start(1);
    }

    double milliseconds()
    {
        _note();
        return static_cast<double>(m_longest) / 1e6;
    }

private:
    void _note()
    {
        const qint64 waited = waitedForProcessor();
        m_longest = std::max(m_longest, m_clock.nsecsElapsed() - (waited - m_waited));
        m_waited = waited;
        m_clock.start();
    }

    QTimer m_timer;
    QElapsedTimer m_clock;
    qint64 m_waited = waitedForProcessor();
    qint64 m_longest = 0;
};

class Waiter : public platform::UrlDownloadObserver
{
public:
    void downloadDidFinish() override { QCoreApplication::quit(); }
    void downloadDidFailWithError(const QString &reason) override { giveUp(qPrintable(reason)); }
};

void downloadByUs(const QString &url, const QString &path)
{
    Waiter waiter;
    const auto download = platform::SystemServices::current().urlDownloads->start(
        {.url = QUrl(url), .destination = path, .overwrite = true}, waiter);
    QCoreApplication::exec();
}

void downloadBare(const QString &url, const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        giveUp("The file cannot be written");
    QNetworkAccessManager network;
    QNetworkReply *const reply = network.get(QNetworkRequest(QUrl(url)));
    QObject::connect(reply, &QNetworkReply::readyRead, reply, [&] { file.write(reply->readAll()); });
    QObject::connect(reply, &QNetworkReply::finished, reply, [&] { QCoreApplication::quit(); });
    QCoreApplication::exec();
    file.write(reply->readAll());
}

/// "seconds megabytes milliseconds" of one download, after a small one that has loaded what is needed.
int runChild(int argc, char **argv, void (*download)(const QString &, const QString &))
{
    QCoreApplication application(argc, argv);
    const QString path = argv[3];
    const QString url = argv[2];
    download(url.section('/', 0, -2) + "/1", path);
    forgetPeak();
    const double before = megabytesFrom("VmRSS:");
    LoopWatch loop;
    QElapsedTimer clock;
    clock.start();
    download(url, path);
    const double seconds = static_cast<double>(clock.nsecsElapsed()) / 1e9;
    std::printf("%f %f %f\n", seconds, megabytesFrom("VmHWM:") - before, loop.milliseconds());
    return QFile(path).size() == sizeOfFile ? 0 : 1;
}

struct Sample
{
    std::vector<double> seconds;
    std::vector<double> megabytes;
    std::vector<double> milliseconds;
};

QList<QByteArray> outputOf(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(program, arguments);
    if (!process.waitForFinished(-1) || process.exitCode() != 0)
        giveUp(qPrintable(program + " failed"));
    return process.readAll().trimmed().split(' ');
}

/// Each writes a new file, whose pages are gone before the next one begins.
void measure(Sample &sample, const QString &program, const QStringList &arguments, const QString &path)
{
    const QList<QByteArray> figures = outputOf(program, arguments);
    sample.seconds.push_back(figures[0].toDouble());
    sample.megabytes.push_back(figures.value(1).toDouble());
    sample.milliseconds.push_back(figures.value(2).toDouble());
    QFile::remove(path);
    ::sync();
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

void print(const char *name, const char *figure, double value, const char *end = ",")
{
    std::printf("{\"name\": \"%s\", %s: %f}%s\n", name, figure, value, end);
}
} // namespace

int main(int argc, char **argv)
{
    if (argc == 4)
        return runChild(argc, argv, QByteArray(argv[1]) == "--ours" ? downloadByUs : downloadBare);
    const ByteServer server;
    const QString folder = qEnvironmentVariable("QW_BENCH_FOLDER", "/var/tmp"); // on a disk: "/tmp" may be memory
    const QTemporaryDir place(folder + "/bench_download-XXXXXX");
    const QString path = place.filePath("file");
    const QString url = server.url(sizeOfFile);
    const QString curl = QStandardPaths::findExecutable("curl");
    Sample ours, bare, byCurl;
    for (int round = 0; round < rounds; ++round) {
        measure(ours, argv[0], {"--ours", url, path}, path);
        measure(bare, argv[0], {"--bare", url, path}, path);
        if (!curl.isEmpty())
            measure(byCurl, curl, {"-s", "-o", path, "-w", "%{time_total}", url}, path);
    }
    constexpr auto seconds = "\"time_unit\": \"s\", \"real_time\"";
    std::printf("{\"benchmarks\": [\n");
    print("recorder-download/ours", seconds, median(ours.seconds));
    print("recorder-download/baseline", seconds, median(bare.seconds));
    print("recorder-download-curl/ours", seconds, median(ours.seconds));
    if (!curl.isEmpty())
        print("recorder-download-curl/baseline", seconds, median(byCurl.seconds));
    print("recorder-download-memory/ours", "\"value\"",
          *std::max_element(ours.megabytes.begin(), ours.megabytes.end()));
    print("recorder-download-hold/ours", "\"time_unit\": \"ms\", \"real_time\"",
          *std::max_element(ours.milliseconds.begin(), ours.milliseconds.end()), "]}");
    return 0;
}

#include "PrivateBus.h"

#include <QWPlatform/foundation/files/FileDescriptor.h>
#include <QWPlatform/linux/desktop/LinuxInstanceLink.h>

#include <QDir>
#include <QLocalServer>
#include <QLocalSocket>
#include <QProcess>
#include <QTest>

#include <cerrno>
#include <sys/socket.h>
#include <sys/un.h>

using namespace platform;

namespace
{
constexpr auto identifier = "com.quorwell.test-host";

/// The other instance: a process that listens and prints what it gets.
class OtherInstance
{
public:
    explicit OtherInstance(const QString &bundleIdentifier)
    {
        m_process.start(QW_LISTENING_INSTANCE, {bundleIdentifier});
    }

    ~OtherInstance()
    {
        m_process.closeWriteChannel(); // it ends with its input
        m_process.waitForFinished();
    }

    QString nextLine()
    {
        if (!QTest::qWaitFor([this] { return m_process.canReadLine(); }, 10'000))
            return "<nothing>";
        return QString::fromUtf8(m_process.readLine()).trimmed();
    }

private:
    QProcess m_process;
};
} // namespace

class tst_LinuxInstanceLink : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void withoutBusNothingHappens();
    void initBus() { QVERIFY(m_bus.start()); }
    void nobodyListening();
    void busThatDoesNotAnswerIsGivenUp_data();
    void busThatDoesNotAnswerIsGivenUp();
    void busThatTakesNoConnectionIsGivenUp();
    void urlsReachTheOtherProcess();
    void onlyOneListens();
    void nameIsFreeAgainAfterTheEnd();
    void ownInstanceIsNoOther();
    void urlsArriveFromTheLoopInOrder();
    void linkMayOutliveTheApplicationObject();
    void serviceNames_data();
    void serviceNames();

private:
    static QString _lineOfOther(const QString &bus);

    PrivateBus m_bus;
};

void tst_LinuxInstanceLink::withoutBusNothingHappens()
{
    qunsetenv("DBUS_SESSION_BUS_ADDRESS");
    LinuxInstanceLink link;
    QVERIFY(!link.listen(identifier, [](const QString &) {}));
    QVERIFY(!link.handOver(identifier, {"x:1"}));
}

void tst_LinuxInstanceLink::nobodyListening()
{
    LinuxInstanceLink link;
    QVERIFY(!link.handOver(identifier, {"x:1"}));
}

void tst_LinuxInstanceLink::busThatDoesNotAnswerIsGivenUp_data()
{
    QTest::addColumn<QByteArrayList>("answers");
    QTest::newRow("takes the connection") << QByteArrayList{};
    QTest::newRow("signs in") << QByteArrayList{"OK 0123456789abcdef0123456789abcdef\r\n"};
    QTest::newRow("refuses") << QByteArrayList{"REJECTED\r\n"};
}

/// The bus library waits for more than a minute: the other process would not print a line in time.
void tst_LinuxInstanceLink::busThatDoesNotAnswerIsGivenUp()
{
    QFETCH(const QByteArrayList, answers);
    const QTemporaryDir folder;
    QLocalServer bus;
    QVERIFY(bus.listen(folder.filePath("bus")));
    connect(&bus, &QLocalServer::newConnection, &bus, [&] {
        QLocalSocket *const client = bus.nextPendingConnection();
        connect(client, &QLocalSocket::readyRead, client, [client, left = answers]() mutable {
            client->readAll();
            if (!left.isEmpty())
                client->write(left.takeFirst());
        });
    });
    QCOMPARE(_lineOfOther(bus.fullServerName()), QString("refused"));
}

/// As one that was stopped, and that others wait for.
void tst_LinuxInstanceLink::busThatTakesNoConnectionIsGivenUp()
{
    const QTemporaryDir folder;
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    qstrncpy(address.sun_path, QFile::encodeName(folder.filePath("bus")).constData(), sizeof address.sun_path);
    const auto *const name = reinterpret_cast<const sockaddr *>(&address);
    const FileDescriptor bus(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    QCOMPARE(::bind(bus.number(), name, sizeof address), 0);
    QCOMPARE(::listen(bus.number(), 0), 0);
    std::vector<std::unique_ptr<FileDescriptor>> waiting;
    int connected = 0;
    while (connected == 0) {
        waiting.push_back(
            std::make_unique<FileDescriptor>(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0)));
        connected = ::connect(waiting.back()->number(), name, sizeof address);
    }
    QCOMPARE(errno, EAGAIN);
    QCOMPARE(_lineOfOther(address.sun_path), QString("refused"));
}

/// What another instance says that has the bus at that path.
QString tst_LinuxInstanceLink::_lineOfOther(const QString &bus)
{
    const QByteArray before = qgetenv("DBUS_SESSION_BUS_ADDRESS");
    qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=" + QFile::encodeName(bus));
    OtherInstance other(identifier);
    qputenv("DBUS_SESSION_BUS_ADDRESS", before);
    return other.nextLine();
}

void tst_LinuxInstanceLink::urlsReachTheOtherProcess()
{
    OtherInstance other(identifier);
    QCOMPARE(other.nextLine(), QString("listening"));
    LinuxInstanceLink link;
    QVERIFY(link.handOver(identifier, {"vesk://open?a=1&b=ä", "vesk://second"}));
    QCOMPARE(other.nextLine(), QString("vesk://open?a=1&b=ä"));
    QCOMPARE(other.nextLine(), QString("vesk://second"));
    QVERIFY(link.handOver(identifier, {})); // only to the front
    QVERIFY(!link.handOver("com.quorwell.another", {"vesk://third"}));
}

void tst_LinuxInstanceLink::onlyOneListens()
{
    OtherInstance other(identifier);
    QCOMPARE(other.nextLine(), QString("listening"));
    LinuxInstanceLink link;
    QVERIFY(!link.listen(identifier, [](const QString &) {}));
    QVERIFY(link.listen("com.quorwell.another", [](const QString &) {}));
}

void tst_LinuxInstanceLink::nameIsFreeAgainAfterTheEnd()
{
    {
        LinuxInstanceLink first;
        QVERIFY(first.listen(identifier, [](const QString &) {}));
    }
    OtherInstance other(identifier);
    QCOMPARE(other.nextLine(), QString("listening"));
}

void tst_LinuxInstanceLink::ownInstanceIsNoOther()
{
    LinuxInstanceLink link;
    QVERIFY(link.listen(identifier, [](const QString &) {}));
    QVERIFY(!link.handOver(identifier, {"x:1"}));
}

void tst_LinuxInstanceLink::urlsArriveFromTheLoopInOrder()
{
    QStringList received;
    LinuxInstanceLink link;
    QVERIFY(link.listen(identifier, [&](const QString &url) { received += url; }));
    QProcess sender;
    sender.start(QW_LISTENING_INSTANCE, {"--hand-over", identifier, "a:1", "a:2", "a:3"});
    QTRY_COMPARE(received, QStringList({"a:1", "a:2", "a:3"}));
    QTRY_COMPARE(sender.state(), QProcess::NotRunning);
    QCOMPARE(sender.exitCode(), 0);
}

void tst_LinuxInstanceLink::linkMayOutliveTheApplicationObject()
{
    QProcess process; // whose link goes with the static objects
    process.start(QW_LISTENING_INSTANCE, {"--static", identifier});
    QTRY_COMPARE(process.state(), QProcess::NotRunning);
    QCOMPARE(process.exitStatus(), QProcess::NormalExit);
    QCOMPARE(process.exitCode(), 0);
}

void tst_LinuxInstanceLink::serviceNames_data()
{
    QTest::addColumn<QString>("bundleIdentifier");
    QTest::addColumn<QString>("name");
    QTest::newRow("as it is") << "com.quorwell.Demo-Host"
                              << "com.quorwell.Demo-Host";
    QTest::newRow("digits first") << "com.7bit.host"
                                  << "com._7bit.host";
    QTest::newRow("other characters") << "com.quorwell.my host/ä"
                                      << "com.quorwell.my_host__";
    QTest::newRow("one element") << "host"
                                 << "application.host";
    QTest::newRow("empty") << ""
                           << "application.application";
    QTest::newRow("dots") << ".com..host."
                          << "com.host";
}

void tst_LinuxInstanceLink::serviceNames()
{
    QFETCH(QString, bundleIdentifier);
    QFETCH(QString, name);
    QCOMPARE(LinuxInstanceLink::serviceName(bundleIdentifier), name);
}

QTEST_MAIN(tst_LinuxInstanceLink)
#include "tst_LinuxInstanceLink.moc"

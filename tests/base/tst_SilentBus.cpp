// A host comes up on a desktop whose session bus takes connections and never answers: a real process (this program
// again) on a real X server, where Qt's own parts look for the bus too.
#include "RecordingHost.h"

#include "fakes/FakeSystem.h"
#include "shortcuts/XServer.h"

#include <QFileInfo>
#include <QLocalServer>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QWidget>

#include <cstring>

class tst_SilentBus : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void hostComesUp();
};

void tst_SilentBus::hostComesUp()
{
    const XServer display;
    if (!display.isRunning())
        QSKIP("There is no X server");
    const QTemporaryDir folder;
    QLocalServer bus; // accepts, and says nothing
    QVERIFY(bus.listen(folder.filePath("bus")));
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("DBUS_SESSION_BUS_ADDRESS", "unix:path=" + bus.fullServerName());
    environment.insert("QT_QPA_PLATFORM", "xcb");
    QProcess host;
    host.setProcessEnvironment(environment);
    host.start(QFileInfo("/proc/self/exe").symLinkTarget(), {"--launch"});
    // Generous: it takes 2 s of patience, and minutes where everyone waits for the bus.
    const bool ended = QTest::qWaitFor([&] { return host.state() == QProcess::NotRunning; }, 60'000);
    host.kill();
    host.waitForFinished();
    QVERIFY(ended);
    QCOMPARE(host.exitStatus(), QProcess::NormalExit);
    QCOMPARE(host.exitCode(), 0);
}

namespace
{
int launch(int argc, char **argv)
{
    FakeSystem system;
    const platform::SystemScope scope(system);
    RecordingHost host(argc, argv);
    QWidget window;
    journal().whileLaunching = [&] {
        window.show();
        QTimer::singleShot(0, &host, &QCoreApplication::quit);
    };
    return QWApplication::exec();
}
} // namespace

int main(int argc, char **argv)
{
    if (argc > 1 && std::strcmp(argv[1], "--launch") == 0)
        return launch(argc, argv);
    QCoreApplication application(argc, argv);
    tst_SilentBus test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_SilentBus.moc"

#include "HostMachine.h"

#include <QWBase/application/ApplicationCategories.h>
#include <QWPlatform/appkit/ResponderChain.h>
#include <QWPlatform/foundation/BackgroundWork.h>

#include <QFileInfo>
#include <QProcess>
#include <QTest>
#include <QThread>

#include <atomic>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <semaphore>

/// How a host launches, what it is called, and what is its own.
class tst_QWApplication : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { journal() = {}; }
    void categoriesWrapTheLaunchOfTheHostInTheirOrder();
    void launchRunsInsideTheEventLoop();
    void delegateIsToldOfTheLaunch();
    void hooksAfterTheLaunchRunWhateverThrew_data();
    void hooksAfterTheLaunchRunWhateverThrew();
    void heldKeysAreWatchedFromTheLaunchOn();
    void quitInsideTheLaunchEndsTheLoop();
    void lastClosedWindowDoesNotEndTheHost();
    void registeringACategoryTooLateIsFatal();
    void identityComesFromTheInfoPlist_data();
    void identityComesFromTheInfoPlist();
    void supportDirectoryIsBelowTheHomeFolder();
    void tempDirectoryIsPrivateAndGoesWithTheApplication();
    void eachInstanceHasATempDirectoryOfItsOwn();
    void tempDirectoryOfADeadInstanceGoesAtTheNextStart();
    void withoutATempDirectoryAnAlertSaysSoOnce();
    void sharedObjectsGoBeforeTheApplication();
    void workEndsBeforeTheApplication();
};

namespace
{
/// Another instance of the host, which has asked for its folder.
class OtherInstance
{
public:
    OtherInstance()
    {
        m_process.start(QFileInfo("/proc/self/exe").symLinkTarget(),
                        {"--use-temp-directory", "-platform", "offscreen"});
        if (!m_process.waitForReadyRead()) // there may be no application object, and so no loop
            qFatal("The other instance says nothing");
        tempDirectory = QString::fromUtf8(m_process.readLine()).trimmed();
    }

    ~OtherInstance() { die(); }

    void die()
    {
        m_process.kill();
        m_process.waitForFinished();
    }

    QString tempDirectory;

private:
    QProcess m_process;
};
} // namespace

void tst_QWApplication::categoriesWrapTheLaunchOfTheHostInTheirOrder()
{
    HostMachine machine;
    RecordingHost host(machine.argc, machine.argv.data());
    quitSoon();
    QCOMPARE(QWApplication::exec(), 0);
    QCOMPARE(journal().entries, wholeLaunch);
}

void tst_QWApplication::launchRunsInsideTheEventLoop()
{
    HostMachine machine;
    RecordingHost host(machine.argc, machine.argv.data());
    int level = 0;
    journal().whileLaunching = [&] {
        level = QThread::currentThread()->loopLevel();
        quitSoon();
    };
    QCOMPARE(journal().entries.size(), 2); // only the two init hooks ran in the constructor
    QWApplication::exec();
    QCOMPARE(level, 1);
}

class LaunchDelegate : public QObject
{
    Q_OBJECT

public:
    Q_INVOKABLE void applicationDidFinishLaunching() { ++launches; }

    int launches = 0;
};

void tst_QWApplication::delegateIsToldOfTheLaunch()
{
    HostMachine machine;
    QWApplication host(machine.argc, machine.argv.data());
    LaunchDelegate delegate;
    platform::setDelegate(&host, &delegate);
    quitSoon();
    QWApplication::exec();
    QCOMPARE(delegate.launches, 1);
}

void tst_QWApplication::hooksAfterTheLaunchRunWhateverThrew_data()
{
    QTest::addColumn<QString>("where");
    QTest::addColumn<QStringList>("expected");
    const QString told = "exception: no way";
    QTest::newRow("host") << "host" << QStringList{"outer will", "inner will", "host", "inner did", "outer did", told};
    QTest::newRow("will") << "inner will" << QStringList{"outer will", "inner will", "inner did", "outer did", told};
    QTest::newRow("did") << "inner did"
                         << QStringList{"outer will", "inner will", "host", "inner did", told, "outer did"};
}

void tst_QWApplication::hooksAfterTheLaunchRunWhateverThrew()
{
    QFETCH(QString, where);
    HostMachine machine({}, {"tone://after"});
    RecordingHost host(machine.argc, machine.argv.data());
    const auto fail = [&](const QString &here) {
        if (here == where)
            throw std::runtime_error("no way");
    };
    journal() = {};
    journal().whileLaunching = [&] { fail("host"); };
    journal().whileInHook = [&](const char *hook) { fail(QString::fromUtf8(hook)); };
    quitSoon();
    QCOMPARE(QWApplication::exec(), 0);
    QFETCH(QStringList, expected);
    QCOMPARE(journal().entries, expected + QStringList{"tone://after"});
    QVERIFY2(machine.log().contains("no way"), machine.log().constData());
}

void tst_QWApplication::heldKeysAreWatchedFromTheLaunchOn()
{
    HostMachine machine;
    RecordingHost host(machine.argc, machine.argv.data());
    QVERIFY(!machine.system.keyboard.isWatched);
    bool watchedDuringTheHostsWork = false;
    journal().whileLaunching = [&] { watchedDuringTheHostsWork = machine.system.keyboard.isWatched; };
    host.finishLaunching();
    QVERIFY(watchedDuringTheHostsWork);
}

void tst_QWApplication::quitInsideTheLaunchEndsTheLoop()
{
    HostMachine machine({}, {"tone://never"});
    RecordingHost host(machine.argc, machine.argv.data());
    journal().whileLaunching = [] { QCoreApplication::exit(3); };
    QCOMPARE(QWApplication::exec(), 3);
    QCOMPARE(journal().entries, wholeLaunch);
}

void tst_QWApplication::lastClosedWindowDoesNotEndTheHost()
{
    HostMachine machine;
    RecordingHost host(machine.argc, machine.argv.data());
    QWidget window;
    bool wentOn = false;
    journal().whileLaunching = [&] {
        window.show();
        window.close();
        QTimer::singleShot(0, &host, [&] { QTimer::singleShot(0, &host, [&] { wentOn = true; }); });
        QTimer::singleShot(0, &host, [] { QTimer::singleShot(0, qApp, [] { quitSoon(); }); });
    };
    QWApplication::exec();
    QVERIFY(wentOn);
}

void tst_QWApplication::registeringACategoryTooLateIsFatal()
{
    QProcess child;
    child.start(QFileInfo("/proc/self/exe").symLinkTarget(), {"--register-late"});
    QVERIFY(child.waitForFinished());
    QCOMPARE(child.exitStatus(), QProcess::CrashExit);
    const QByteArray errors = child.readAllStandardError();
    QVERIFY2(errors.contains("The category late was registered after the application object"), errors.constData());
}

void tst_QWApplication::identityComesFromTheInfoPlist_data()
{
    QTest::addColumn<QVariantMap>("info");
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("major");
    QTest::addColumn<bool>("beta");
    const auto version = [](const char *text) { return QVariantMap{{"CFBundleShortVersionString", text}}; };
    QTest::newRow("beta") << QVariantMap() << "Test Host" << 2 << true;
    QTest::newRow("display name") << QVariantMap{{"CFBundleDisplayName", "Söng & Co"}} << "Söng & Co" << 2 << true;
    QTest::newRow("final") << version("10.4.1") << "Test Host" << 10 << false;
    QTest::newRow("alpha") << version("1.0a") << "Test Host" << 1 << true;
    QTest::newRow("public beta") << version("1.5pb2") << "Test Host" << 1 << true;
    QTest::newRow("candidate") << version("3.0rc1") << "Test Host" << 3 << true;
    QTest::newRow("words") << version("4.0 final") << "Test Host" << 4 << false;
    QTest::newRow("no number") << version("x") << "Test Host" << 0 << false;
    QTest::newRow("wrong type") << QVariantMap{{"CFBundleShortVersionString", QVariantList{1}}} << "Test Host" << 0
                                << false;
    QTest::newRow("no name") << QVariantMap{{"CFBundleName", ""}} << "tst_QWApplication" << 2 << true;
}

void tst_QWApplication::identityComesFromTheInfoPlist()
{
    QFETCH(QVariantMap, info);
    HostMachine machine(info);
    RecordingHost host(machine.argc, machine.argv.data());
    QTEST(host.name(), "name");
    QTEST(QCoreApplication::applicationName(), "name");
    QTEST(host.majorVersion(), "major");
    QTEST(host.isBetaVersion(), "beta");
    QCOMPARE(host.code(), QString("TH"));
}

void tst_QWApplication::supportDirectoryIsBelowTheHomeFolder()
{
    HostMachine machine({{"CFBundleName", "In/Out"}});
    RecordingHost host(machine.argc, machine.argv.data());
    QCOMPARE(host.supportDirectory(), machine.system.real("~/Library/Application Support/Quorwell/In:Out"));
    QVERIFY(!QFileInfo::exists(host.supportDirectory()));
}

void tst_QWApplication::tempDirectoryIsPrivateAndGoesWithTheApplication()
{
    QString path;
    {
        HostMachine machine;
        RecordingHost host(machine.argc, machine.argv.data());
        path = host.tempDirectory();
        QCOMPARE(std::filesystem::status(path.toStdString()).permissions(), std::filesystem::perms::owner_all);
        QCOMPARE(host.tempDirectory(), path);
        QVERIFY(QDir(path).removeRecursively());
        path = host.tempDirectory();
        QVERIFY(QFileInfo(path).isDir());
    }
    QVERIFY(!QFileInfo::exists(path));
}

void tst_QWApplication::eachInstanceHasATempDirectoryOfItsOwn()
{
    const OtherInstance other;
    QVERIFY(QFileInfo(other.tempDirectory).isDir());
    HostMachine machine;
    RecordingHost host(machine.argc, machine.argv.data());
    QVERIFY(host.tempDirectory() != other.tempDirectory);
}

void tst_QWApplication::tempDirectoryOfADeadInstanceGoesAtTheNextStart()
{
    const OtherInstance living;
    OtherInstance dead;
    QVERIFY(QFile(dead.tempDirectory + "/leftover").open(QIODevice::WriteOnly));
    QVERIFY(QDir(dead.tempDirectory).mkdir("folder"));
    QVERIFY(QFile::setPermissions(dead.tempDirectory + "/folder", {}));
    dead.die();
    const QString alike = QFileInfo(dead.tempDirectory).path() + "/Test Host.backup";
    QVERIFY(QDir().mkpath(alike));

    HostMachine machine;
    RecordingHost host(machine.argc, machine.argv.data());
    quitSoon();
    QWApplication::exec();
    QTRY_VERIFY(!QFileInfo::exists(dead.tempDirectory));
    QVERIFY(QFileInfo(living.tempDirectory).isDir());
    QVERIFY(QFileInfo(alike).isDir()); // somebody else's
    QVERIFY(QDir(alike).removeRecursively());
}

void tst_QWApplication::withoutATempDirectoryAnAlertSaysSoOnce()
{
    const QByteArray before = qgetenv("TMPDIR");
    HostMachine machine;
    RecordingHost host(machine.argc, machine.argv.data());
    qputenv("TMPDIR", QFile::encodeName(machine.system.real("~/none")));
    QCOMPARE(host.tempDirectory(), QString());
    QCOMPARE(host.tempDirectory(), QString());
    before.isNull() ? qunsetenv("TMPDIR") : qputenv("TMPDIR", before);
    QCOMPARE(machine.system.alerts.shown, QStringList("A folder for temporary files could not be made."));
    QVERIFY(QFileInfo(host.tempDirectory()).isDir()); // now there is a place
}

struct Witness
{
    ~Witness() { *seen += QWApplication::sharedApplication() ? "with application" : "alone"; }

    QStringList *seen;
};

void tst_QWApplication::sharedObjectsGoBeforeTheApplication()
{
    HostMachine machine;
    QStringList seen;
    {
        RecordingHost host(machine.argc, machine.argv.data());
        QCOMPARE(QWApplication::sharedApplication(), &host);
        machine.system.shared<Witness>([&] { return new Witness{&seen}; });
    }
    QCOMPARE(seen, QStringList("with application"));
    QVERIFY(!QWApplication::sharedApplication());
}

void tst_QWApplication::workEndsBeforeTheApplication()
{
    HostMachine machine;
    std::atomic<bool> hadApplication = false;
    std::binary_semaphore begun(0);
    {
        RecordingHost host(machine.argc, machine.argv.data());
        QVERIFY(machine.system.backgroundWork().start([&]() -> std::function<void()> {
            begun.release();
            QThread::yieldCurrentThread();
            hadApplication = QCoreApplication::instance() != nullptr;
            return {};
        }));
        begun.acquire();
    }
    QVERIFY(hadApplication);
    QCOMPARE(machine.system.backgroundWork().running(), 0);
    QTest::ignoreMessage(QtWarningMsg, "Background work cannot be started any more");
    QVERIFY(!machine.system.backgroundWork().start([]() -> std::function<void()> { return {}; }));
    machine.system.urlLoader.answer("http://support.test/", "late");
    QVERIFY(
        !machine.system.urlLoader.load({.url = QUrl("http://support.test/"), .headers = {}, .body = {}}).succeeded());
}

namespace
{
int useTempDirectory(int argc, char **argv)
{
    HostMachine machine;
    RecordingHost host(argc, argv);
    std::puts(qPrintable(host.tempDirectory()));
    std::fflush(stdout);
    return std::getchar(); // until it is killed
}

void registerLate(int argc, char **argv)
{
    HostMachine machine;
    RecordingHost host(argc, argv);
    qw::registerCategory({.name = "late"});
}
} // namespace

int main(int argc, char **argv)
{
    registerRecordingCategories();
    if (argc > 1 && std::strcmp(argv[1], "--register-late") == 0)
        return registerLate(argc, argv), 0;
    if (argc > 1 && std::strcmp(argv[1], "--use-temp-directory") == 0)
        return useTempDirectory(argc, argv);
    tst_QWApplication test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_QWApplication.moc"

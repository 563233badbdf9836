#include "BrowserDriver.h"

#include <QWPlatform/appkit/FilePanels.h>
#include <QWPlatform/machine/SystemServices.h>
#include <QWUtilities/recorder/QWVeskBrowser.h>
#include <fakes/FakeFilePanels.h>
#include <fakes/QWTestMain.h>
#include <network/PrivateAvahi.h>
#include <simulators/Curl.h>
#include <simulators/recorder/RecorderSimulator.h>
#include <simulators/recorder/takes/MadeUpTakes.h>

#include <QDir>
#include <QProcess>
#include <QSocketNotifier>

#include <csignal>
#include <sys/mount.h>
#include <unistd.h>

using namespace platform;

namespace
{
void tell(const char *what)
{
    QTextStream(stdout) << what << Qt::endl;
}

/// Saves all takes into a folder as soon as they are listed, and tells how far it is.
class SavingHost : public QObject
{
public:
    explicit SavingHost(QString folder)
        : m_folder(std::move(folder))
    {
        auto panels = std::make_unique<FakeFilePanels>();
        m_panels = panels.get();
        SystemServices::current().filePanels = std::move(panels);
        startTimer(1);
    }

protected:
    void timerEvent(QTimerEvent *) override
    {
        if (BrowserDriver::count() > 0 && !m_isSaving)
            _save();
        if (m_isSaving && BrowserDriver::isSaving())
            _tellOnce(m_toldBegun, BrowserDriver::find<QProgressBar>("progressBar")->value() > 0, "arriving");
        _tellOnce(m_toldFailure, !BrowserDriver::failure().isEmpty(), "failed");
        _tellOnce(m_toldEnd, m_isSaving && !BrowserDriver::isSaving(), "saved");
    }

private:
    void _save()
    {
        m_isSaving = true;
        tell("listed");
        BrowserDriver::select(0, BrowserDriver::count() - 1);
        BrowserDriver::chooseFormat("WAVE");
        BrowserDriver::saveButton()->click();
        tell("choosing");
        m_panels->endOpen(FilePanels::OK, {m_folder});
    }

    void _tellOnce(bool &isTold, bool holds, const char *what)
    {
        if (holds && !std::exchange(isTold, true))
            tell(what);
    }

    QString m_folder;
    FakeFilePanels *m_panels;
    bool m_isSaving = false;
    bool m_toldBegun = false;
    bool m_toldFailure = false;
    bool m_toldEnd = false;
};

int runHost(int argc, char **argv)
{
    QWApplication application(argc, argv);
    SavingHost host(argv[2]);
    QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, &application, [&input] {
        input.setEnabled(false); // once only: a second quit may succeed where the first one did not
        QCoreApplication::quit();
    });
    QMetaObject::invokeMethod(
        &application, [] { QWVeskBrowser::openWindow(); }, Qt::QueuedConnection);
    tell("started");
    return QWApplication::exec();
}

/// A host in a process of its own, on the machine as it is.
class Host
{
public:
    Host(const QString &folder, quint16 port)
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("QW_NET_SERVICES", QString("Vesk on Studio=127.0.0.1:%1").arg(port));
        process.setProcessEnvironment(environment);
        process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        process.start(QFileInfo("/proc/self/exe").symLinkTarget(), {"--host", folder});
    }

    ~Host()
    {
        process.kill();
        process.waitForFinished();
    }

    bool tells(const QByteArray &what)
    {
        return BrowserDriver::until([&] {
                   said += process.readAllStandardOutput();
                   return said.contains(what) || process.state() == QProcess::NotRunning;
               }) &&
               said.contains(what);
    }

    /// Well before any server is given up for silent.
    bool quits()
    {
        process.write("quit\n");
        return QTest::qWaitFor([this] { return process.state() == QProcess::NotRunning; }, 20'000) &&
               process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
    }

    QProcess process;
    QByteArray said;
};
} // namespace

/// Hosts that save takes and are quit or killed in it, or whose disk takes nothing.
class tst_RecorderProcess : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void quittingLeavesNothingPartial_data();
    void quittingLeavesNothingPartial();
    void killedHostLeavesNothingUnderTheName();
    void diskThatTakesNothingFails_data();
    void diskThatTakesNothingFails();
    void folderRemovedInMidDownload();

private:
    QStringList _entries() const
    {
        return QDir(m_folder->path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<RecorderSimulator> m_recorder;
};

void tst_RecorderProcess::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_recorder = std::make_unique<RecorderSimulator>(QString());
    m_recorder->setTakes(MadeUpTakes::takes({.count = 3, .length = 30}));
    QVERIFY(m_recorder->listen());
}

void tst_RecorderProcess::cleanup()
{
    m_recorder.reset();
}

void tst_RecorderProcess::quittingLeavesNothingPartial_data()
{
    QTest::addColumn<QString>("listFault");
    QTest::addColumn<QString>("downloadFault");
    QTest::addColumn<QByteArray>("moment");
    QTest::newRow("at once") << QString() << QString() << QByteArray("started");
    QTest::newRow("list that never comes") << "silent" << QString() << QByteArray("started");
    QTest::newRow("list that never ends") << "endless" << QString() << QByteArray("started");
    QTest::newRow("takes are there") << QString() << QString() << QByteArray("listed");
    QTest::newRow("download that never comes") << QString() << "silent" << QByteArray("choosing");
    QTest::newRow("download that comes slowly") << QString() << "slow=20000" << QByteArray("arriving");
    QTest::newRow("download that stalls") << QString() << "stalled" << QByteArray("arriving");
    QTest::newRow("download in a ring") << QString() << "ring" << QByteArray("choosing");
    QTest::newRow("failure that waits") << QString() << "status" << QByteArray("failed");
}

void tst_RecorderProcess::quittingLeavesNothingPartial()
{
    QFETCH(const QString, listFault);
    QFETCH(const QString, downloadFault);
    QFETCH(const QByteArray, moment);
    if (const auto fault = ListFault::named(listFault))
        m_recorder->setList({.isBlue = false, .isBinary = false, .faults = {*fault}});
    else if (const auto answer = AnswerFault::named(listFault))
        m_recorder->addListFault(*answer);
    if (const auto fault = AnswerFault::named(downloadFault))
        m_recorder->addDownloadFault(*fault);
    Host host(m_folder->path(), m_recorder->port());
    QVERIFY(host.tells(moment));
    if (moment == "started")
        QVERIFY(BrowserDriver::until([this] { return !m_recorder->requests().empty(); }));
    QVERIFY(host.quits());
    for (const QString &name : _entries()) // what was through before
        QVERIFY(std::ranges::any_of(m_recorder->takes(), [&](const RecorderTake &take) {
            return take.title + ".wav" == name && take.fileSize == QFileInfo(m_folder->filePath(name)).size();
        }));
    if (!downloadFault.isEmpty())
        QCOMPARE(_entries(), QStringList());
}

void tst_RecorderProcess::killedHostLeavesNothingUnderTheName()
{
    m_recorder->addDownloadFault(*AnswerFault::named("slow=20000"), 2);
    Host host(m_folder->path(), m_recorder->port());
    QVERIFY(BrowserDriver::until([this] { return m_recorder->downloads() == 2; }));
    const QString first = m_recorder->takes().front().title + ".wav";
    QVERIFY(BrowserDriver::until([&] { return _entries().contains(first); }));
    ::kill(static_cast<pid_t>(host.process.processId()), SIGKILL);
    QVERIFY(host.process.waitForFinished());
    QCOMPARE(_entries(), QStringList(first)); // whole, and nothing of the one that came
    QCOMPARE(QFileInfo(m_folder->filePath(first)).size(), m_recorder->takes().front().fileSize);
}

void tst_RecorderProcess::diskThatTakesNothingFails_data()
{
    QTest::addColumn<QByteArray>("options");
    QTest::addColumn<bool>("isReadOnly");
    QTest::newRow("full") << QByteArray("size=65536") << false;
    QTest::newRow("read only") << QByteArray() << true;
}

void tst_RecorderProcess::diskThatTakesNothingFails()
{
    QFETCH(const QByteArray, options);
    QFETCH(const bool, isReadOnly);
    const QByteArray disk = QFile::encodeName(m_folder->path());
    QCOMPARE(::mount("none", disk.constData(), "tmpfs", isReadOnly ? MS_RDONLY : 0, options.constData()), 0);
    const auto takeAway = qScopeGuard([&disk] { ::umount2(disk.constData(), MNT_DETACH); });
    Host host(m_folder->path(), m_recorder->port());
    QVERIFY(host.tells("failed"));
    QCOMPARE(_entries(), QStringList());
    QVERIFY(host.quits());
}

void tst_RecorderProcess::folderRemovedInMidDownload()
{
    m_recorder->addDownloadFault(*AnswerFault::named("slow=200000"));
    QVERIFY(QDir(m_folder->path()).mkdir("takes"));
    Host host(m_folder->filePath("takes"), m_recorder->port());
    QVERIFY(host.tells("arriving"));
    QVERIFY(QDir(m_folder->filePath("takes")).removeRecursively());
    QVERIFY(host.tells("failed"));
    QVERIFY(host.quits());
    QCOMPARE(_entries(), QStringList());
}

int main(int argc, char **argv)
{
    if (argc == 3 && argv[1] == std::string("--host"))
        return runHost(argc, argv);
    PrivateAvahi::enterPrivateNetwork(); // whose disks are the test's own, too
    QCoreApplication application(argc, argv);
    tst_RecorderProcess test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_RecorderProcess.moc"

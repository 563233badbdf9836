// How a validator treats plug-ins that take their time, take too much, or leave something behind.
#include "ValidatorArguments.h"
#include "audio-plugins/PluginDisk.h"

#include <QWPlatform/linux/plugins/LinuxComponentRegistry.h>

#include <QFile>

#include <csignal>

namespace
{
constexpr auto validator = QW_VST_VALIDATOR;

/// Also when nobody has reaped it yet.
bool hasEnded(const QByteArray &process)
{
    QFile state(QString("/proc/%1/stat").arg(QLatin1StringView(process)));
    return !state.open(QIODevice::ReadOnly) || state.readAll().contains(") Z ");
}

/// The processes that the plug-in began; none until it has.
QList<QByteArray> processesOfPlugin(const PluginDisk &disk)
{
    QFile file(disk.home() + "/processes");
    return file.open(QIODevice::ReadOnly) ? file.readAll().simplified().split(' ') : QList<QByteArray>();
}

/// Starts the validator as a host does that can be killed: the validator's id is the first line of its output.
void startHost(QProcess &host, const PluginDisk &disk, const QString &plugin)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("HOME", disk.home());
    host.setProcessEnvironment(environment);
    host.start("/bin/sh", {"-c", "\"$0\" \"$1\" & echo $!; wait", validator, plugin});
    QVERIFY(host.waitForReadyRead());
}
} // namespace

class tst_PluginTrials : public QObject
{
    Q_OBJECT

private slots:
    void patienceIsHad_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("said");
        QTest::newRow("threads that have just begun") << "Threading" << QByteArray();
        QTest::newRow("crash while closing, once")
            << "CrashAtFirstClose" << QByteArray("The plug-in crashes (closing): Segmentation fault.");
        QTest::newRow("killed by others, once")
            << "KilledAtFirst" << QByteArray("The plug-in crashes (opening): Killed.");
        QTest::newRow("process ended, as when a display goes away")
            << "ExitingAtFirst" << QByteArray("The plug-in ends the process (opening).");
        QTest::newRow("noise at the beginning")
            << "NotFiniteAtFirst" << QByteArray("The plug-in gives samples that are not finite.");
    }

    void patienceIsHad()
    {
        QFETCH(QString, name);
        QFETCH(QByteArray, said);
        const PluginDisk disk;
        const auto run = disk.run(validator, {disk.installVst(name)});
        QVERIFY2(run.status == 0 && QFile::exists(disk.vstHandOff()), run.errors.constData());
        QCOMPARE(run.errors.count('\n'), said.isEmpty() ? 0 : 1); // once is enough
        QVERIFY2(run.errors.contains(said), run.errors.constData());
    }

    /// They abort, or give anything, when they are closed or played before their threads have begun.
    void pluginsThatBeginThreadsPass_data()
    {
        QTest::addColumn<QString>("bundle");
        for (const char *bundle : {"drumkv1.lv2", "samplv1.lv2", "padthv1.lv2"})
            QTest::newRow(bundle) << bundle;
    }

    void pluginsThatBeginThreadsPass()
    {
        QFETCH(QString, bundle);
        if (!QFile::exists("/usr/lib/lv2/" + bundle))
            QSKIP("The package is not installed");
        const PluginDisk disk;
        QVERIFY(QFile::link("/usr/lib/lv2/" + bundle, disk.lv2Folder() + '/' + bundle));
        const platform::Locations locations = disk.locations();
        const auto units = platform::LinuxComponentRegistry(locations).componentsOfType(platform::fourCharCode("aumu"));
        QCOMPARE(units.size(), std::size_t(1));
        for (int attempt = 1; attempt <= 3; ++attempt) {
            const auto run = disk.run(QW_AU_VALIDATOR, argumentsFor(units[0]));
            QVERIFY2(run.status == 0, run.errors.constData());
        }
    }

    void reasonIsTold_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("reason");
        QTest::newRow("CrashAtLoad") << "CrashAtLoad" << QByteArray("crashes (opening): Segmentation fault.");
        QTest::newRow("CrashAtOpen") << "CrashAtOpen" << QByteArray("crashes (opening): Segmentation fault.");
        QTest::newRow("CrashAtClose") << "CrashAtClose" << QByteArray("crashes (closing): Segmentation fault.");
        QTest::newRow("Exiting") << "Exiting" << QByteArray("ends the process (opening).");
        QTest::newRow("Stopping") << "Stopping" << QByteArray("crashes (opening): Killed.");
        QTest::newRow("Greedy") << "Greedy" << QByteArray("crashes (opening): Segmentation fault.");
        QTest::newRow("NotFinite") << "NotFinite" << QByteArray("gives samples that are not finite.");
    }

    void reasonIsTold()
    {
        QFETCH(QString, name);
        QFETCH(QByteArray, reason);
        const PluginDisk disk;
        const QString path = disk.installVst(name);
        const auto run = disk.run(validator, {path});
        QCOMPARE(run.status, 1);
        const QByteArray sentence = "VST Validator: " + path.toUtf8() + ": The plug-in " + reason + '\n';
        QVERIFY2(run.errors.endsWith(sentence), run.errors.constData());
        QVERIFY(!QFile::exists(disk.vstHandOff()));
    }

    void processesOfThePluginEndWithItsTrial()
    {
        const PluginDisk disk;
        const auto run = disk.run(validator, {disk.installVst("Forking")});
        QVERIFY2(run.status == 0 && QFile::exists(disk.vstHandOff()), run.errors.constData());
        const auto processes = processesOfPlugin(disk);
        QCOMPARE(processes.size(), 2);
        for (const QByteArray &process : processes)
            QVERIFY2(hasEnded(process), process.constData());
    }

    void nothingIsLeftForAHostThatHasGone()
    {
        const PluginDisk disk;
        const auto run = disk.run("env", {"QW_HOST_PROCESS=1", validator, disk.installVst("Good")});
        QCOMPARE(run.status, 1);
        QVERIFY(!QFile::exists(disk.vstHandOff()));
    }

    void allEndsWithTheHost()
    {
        const PluginDisk disk;
        QProcess host;
        startHost(host, disk, disk.installVst("ForkingAndHanging"));
        QVERIFY(!QTest::currentTestFailed());
        const QByteArray validatorId = host.readLine().trimmed();
        QTRY_COMPARE_WITH_TIMEOUT(processesOfPlugin(disk).size(), 2, 20000);
        host.kill();
        QVERIFY(host.waitForFinished());
        const auto processes = processesOfPlugin(disk) + QList<QByteArray>{validatorId};
        for (const QByteArray &process : processes)
            QTRY_VERIFY2_WITH_TIMEOUT(hasEnded(process), process.constData(), 20000);
        QVERIFY(!QFile::exists(disk.vstHandOff()));
    }
};

QTEST_GUILESS_MAIN(tst_PluginTrials)
#include "tst_PluginTrials.moc"

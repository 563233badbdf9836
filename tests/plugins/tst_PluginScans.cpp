// Whole scans by real hosts with real validators: two at once, on a full disk, in a home that cannot be written.
#include <QDir>
#include <QFile>
#include <QMap>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <array>
#include <optional>

namespace
{
const QStringList plugins{"Alfa", "Bravo", "Charlie", "Delta", "Echo", "Foxtrot", "Golf", "Hotel"};
constexpr auto trouble = "New plug-ins cannot be tried.";

/// A machine on which the good test bundle is installed under several names.
class Machine
{
public:
    Machine()
    {
        const QString from = QW_TEST_PLUGINS "/VST/Good.vst/Contents/";
        for (const QString &name : plugins) {
            const QString to = folder() + '/' + name + ".vst/Contents/";
            QDir().mkpath(to + "x86_64-linux");
            QFile::copy(from + "Info.plist", to + "Info.plist");
            QFile::link(from + "x86_64-linux/Good.so", to + "x86_64-linux/Good.so");
        }
    }

    QString home() const { return m_disk.filePath("home"); }
    QString folder() const { return m_disk.filePath("root/Library/Audio/Plug-Ins/VST"); }
    QString path() const { return m_disk.path(); }

    QProcessEnvironment environment() const
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("HOME", home());
        environment.insert("QW_LIBRARY_ROOT", m_disk.filePath("root"));
        environment.insert("LV2_PATH", m_disk.filePath("nothing"));
        return environment;
    }

    /// What a scan prints that finds all plug-ins good, in any order.
    QStringList all() const
    {
        QStringList lines;
        for (const QString &name : plugins)
            lines += "bundle\t/Library/Audio/Plug-Ins/VST/" + name + ".vst\tok";
        return lines;
    }

private:
    QTemporaryDir m_disk;
};

QStringList sortedLines(const QByteArray &text)
{
    QStringList lines = QString::fromUtf8(text).split('\n', Qt::SkipEmptyParts);
    lines.sort();
    return lines;
}

/// What each scan of the script printed, by its word.
QMap<QByteArray, QByteArray> scansOf(const QByteArray &output)
{
    QMap<QByteArray, QByteArray> scans;
    QByteArray scan;
    for (const QByteArray &line : output.split('\n')) {
        if (line.startsWith("-- "))
            scan = line.sliced(3);
        else if (!line.isEmpty())
            scans[scan] += line + '\n';
    }
    return scans;
}
} // namespace

class tst_PluginScans : public QObject
{
    Q_OBJECT

private slots:
    void twoHostsThatScanAtOnceCondemnNothing()
    {
        const Machine machine;
        std::array<QProcess, 2> hosts;
        for (QProcess &host : hosts) {
            host.setProcessEnvironment(machine.environment());
            host.start(QW_SCAN_HOST, {});
        }
        for (QProcess &host : hosts) {
            QVERIFY(host.waitForFinished(100'000));
            const QByteArray alerts = host.readAllStandardError();
            QVERIFY2(alerts.isEmpty(), alerts.constData());
            QCOMPARE(sortedLines(host.readAllStandardOutput()), machine.all());
        }
    }

    void fullDiskAndFixedHomeCondemnNothing()
    {
        if (QProcess::execute("unshare", {"-m", "mount", "-t", "tmpfs", "none", "/mnt"}) != 0)
            QSKIP("No disk can be mounted here");
        const Machine machine;
        QProcess script;
        script.setProcessEnvironment(machine.environment());
        script.setProcessChannelMode(QProcess::MergedChannels);
        script.start("unshare", {"-m", "sh", QW_LIMITED_HOMES, QW_SCAN_HOST, machine.path() + "/homes"});
        QVERIFY(script.waitForFinished(100'000));
        const auto printed = scansOf(script.readAll());
        for (const char *scan : {"full", "fixed"}) {
            QVERIFY2(printed[scan].startsWith(trouble), printed[scan].constData());
            QCOMPARE(printed[scan].count('\n'), 1); // told once, and nothing in the catalogs
        }
        for (const char *scan : {"room", "known", "writable"})
            QCOMPARE(sortedLines(printed[scan]), machine.all());
    }
};

QTEST_GUILESS_MAIN(tst_PluginScans)
#include "tst_PluginScans.moc"

#include <simulators/GridSimulator.h>

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include <unistd.h>

namespace
{
constexpr int longEnough = 30'000; // milliseconds

QByteArrayList linesOf(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("Cannot read %s", qPrintable(path));
    QByteArrayList lines;
    for (const QByteArray &line : file.readAll().split('\n'))
        if (!line.trimmed().isEmpty() && !line.startsWith('#'))
            lines.append(line);
    return lines;
}

/// "ENV{ID_SERIAL_SHORT}==" of the rule: patterns with a star at their end.
QStringList serialPatterns()
{
    static const QRegularExpression match("ENV\\{ID_SERIAL_SHORT\\}==\"([^\"]+)\"");
    return match.match(linesOf(QW_GRID_RULE).first()).captured(1).split('|');
}

bool isMatched(const QString &serial)
{
    const QStringList patterns = serialPatterns();
    return std::any_of(patterns.begin(), patterns.end(), [&](const QString &pattern) {
        return QRegularExpression(QRegularExpression::wildcardToRegularExpression(pattern)).match(serial).hasMatch();
    });
}

QString whyNoUdev()
{
    if (::geteuid() != 0)
        return "Namespaces need root";
    if (QStandardPaths::findExecutable("udevadm").isEmpty() || QStandardPaths::findExecutable("unshare").isEmpty())
        return "There is no udevadm or no unshare";
    if (!QFileInfo("/sys/class/tty/ttyS0/uevent").isWritable())
        return "There is no serial port to borrow";
    return QProcess::execute("unshare", {"-mn", "mount", "-t", "tmpfs", "none", "/mnt"}) == 0
               ? ""
               : "Nothing may be mounted";
}
} // namespace

/// The udev rule for grids: as a text, and with a udev daemon and a pseudo-terminal in namespaces of their own.
class tst_GridRule : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void ruleIsMadeOfMatchesAndAssignments();
    void ruleMeansGridsOnly_data();
    void ruleMeansGridsOnly();
    void gridIsFoundThroughTheRule();
    void missingRuleIsExplained();

private:
    bool _start(const QString &serial, const QString &rules);
    bool _hears(const QByteArray &line);
    bool _end();

    QTemporaryDir m_folder;
    GridSimulator m_grid{m_folder.path()};
    QProcess m_machine;
    QByteArray m_output;
};

bool tst_GridRule::_start(const QString &serial, const QString &rules)
{
    m_output.clear();
    if (!m_grid.plug("m64-0123"))
        return false;
    const QString terminal = QFileInfo(m_grid.link()).symLinkTarget();
    m_machine.start("unshare", {"-mn", "bash", QW_PRIVATE_UDEV, terminal, serial, rules, QW_GRID_PROBE});
    return _hears("ready\n");
}

bool tst_GridRule::_hears(const QByteArray &line)
{
    return QTest::qWaitFor([&] { return (m_output += m_machine.readAllStandardOutput()).contains(line); }, longEnough);
}

bool tst_GridRule::_end()
{
    m_machine.closeWriteChannel();
    return m_machine.waitForFinished(longEnough) && m_machine.exitCode() == 0;
}

void tst_GridRule::ruleIsMadeOfMatchesAndAssignments()
{
    static const QRegularExpression pair("^[A-Z]+(\\{[A-Za-z_]+\\})?(==|!=|=|\\+=|:=)\"[^\"]*\"$");
    const QByteArrayList lines = linesOf(QW_GRID_RULE);
    QCOMPARE(lines.size(), 1);
    for (const QByteArray &part : lines.first().split(','))
        QVERIFY2(pair.match(QString::fromUtf8(part.trimmed())).hasMatch(), part.constData());
}

void tst_GridRule::ruleMeansGridsOnly_data()
{
    QTest::addColumn<QString>("serial");
    QTest::addColumn<bool>("isGrid");
    QTest::newRow("40h") << QString("m40h0020") << true;
    QTest::newRow("40h with a dash") << QString("m40h-002") << true;
    QTest::newRow("64") << QString("m64-0123") << true;
    QTest::newRow("128") << QString("m128-012") << true;
    QTest::newRow("256") << QString("m256-042") << true;
    QTest::newRow("later device") << QString("m0000123") << false;
    QTest::newRow("64 in the middle") << QString("xm64-0123") << false;
    QTest::newRow("other") << QString("A9007UX1") << false;
}

void tst_GridRule::ruleMeansGridsOnly()
{
    QFETCH(QString, serial);
    QFETCH(bool, isGrid);
    QCOMPARE(isMatched(serial), isGrid);
}

void tst_GridRule::gridIsFoundThroughTheRule()
{
    if (const QString reason = whyNoUdev(); !reason.isEmpty())
        QSKIP(qPrintable(reason));
    QTemporaryDir rules;
    QVERIFY(QFile::copy(QW_GRID_RULE, rules.filePath("70-quorwell-grid.rules")));
    QVERIFY(_start("m128-0012", rules.path()));
    m_machine.write("add\n");
    QVERIFY2(_hears("connected 12, 128 buttons\n"), m_machine.readAllStandardError().constData());
    QTRY_VERIFY_WITH_TIMEOUT(m_grid.hasHost(), longEnough);
    const auto isHeard = [&] {
        m_grid.press(3, 5);
        return (m_output += m_machine.readAllStandardOutput()).contains("down 3 5\n");
    };
    QVERIFY(QTest::qWaitFor(isHeard, longEnough));
    m_machine.write("tell\n");
    QVERIFY(_hears("SPEED=115200\n"));
    QVERIFY(m_output.contains("ID_MM_DEVICE_IGNORE=1\n")); // no modem prober writes to it
    QVERIFY(m_output.contains("ID_MM_PORT_IGNORE=1\n"));
    m_machine.write("remove\n");
    QVERIFY(_hears("removed\n"));
    m_output.clear();
    m_machine.write("add\n"); // as the same device
    QVERIFY(_hears("connected 12, 128 buttons\n"));
    QVERIFY(_end());
}

void tst_GridRule::missingRuleIsExplained()
{
    if (const QString reason = whyNoUdev(); !reason.isEmpty())
        QSKIP(qPrintable(reason));
    QTemporaryDir rules;
    QFile other(rules.filePath("60-other.rules"));
    QVERIFY(other.open(QIODevice::WriteOnly));
    other.close();
    QVERIFY(_start("m64-0123", rules.path()));
    m_machine.write("add\n");
    QByteArray errors;
    QVERIFY(QTest::qWaitFor(
        [&] {
            return (errors += m_machine.readAllStandardError()).contains("install the rule 70-quorwell-grid.rules");
        },
        longEnough));
    QVERIFY(errors.contains("/dev/ttyS0 is the grid m64-0123"));
    QVERIFY(_end());
    QVERIFY(!m_output.contains("connected"));
}

QTEST_GUILESS_MAIN(tst_GridRule)
#include "tst_GridRule.moc"

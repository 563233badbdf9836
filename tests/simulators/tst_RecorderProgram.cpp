#include "Curl.h"

#include <QWPlatform/foundation/PropertyList.h>

#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

using namespace platform;

namespace
{
/// The program with no bus to announce itself on.
class Program
{
public:
    explicit Program(const QStringList &arguments)
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/none/such");
        environment.insert("TMPDIR", folder.path());
        process.setProcessEnvironment(environment);
        process.start(QW_RECORDER_SIMULATOR, arguments);
    }

    ~Program()
    {
        process.kill();
        process.waitForFinished();
    }

    QString line()
    {
        if (!QTest::qWaitFor([this] { return process.canReadLine() || process.state() == QProcess::NotRunning; },
                             30'000))
            qFatal("The recorder says nothing");
        return QString::fromUtf8(process.readLine()).trimmed();
    }

    bool end()
    {
        return QTest::qWaitFor([this] { return process.state() == QProcess::NotRunning; }, 30'000);
    }

    QTemporaryDir folder; ///< Its temporary files.
    QProcess process;
};
} // namespace

class tst_RecorderProgram : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void helpTellsEverything();
    void badOptionsAreTold_data();
    void badOptionsAreTold();
    void withoutDaemonItTellsHowItIsFound_data();
    void withoutDaemonItTellsHowItIsFound();
    void servesWhatItWasTold();
    void takenPortIsTold();
    void logHoldsRequestsAsTheyCame();
    void leavesAfterAWhile();
    void leavesNothingBehind();
};

void tst_RecorderProgram::helpTellsEverything()
{
    Program program({"--help"});
    QVERIFY(program.end());
    QCOMPARE(program.process.exitCode(), 0);
    const QString help = QString::fromUtf8(program.process.readAllStandardOutput());
    for (const char *const word : {"--folder", "--list-fault", "--download-fault", "--printers", "stalled[=bytes]",
                                   "titles-markup", "0.0.0.0", "ffmpeg"})
        QVERIFY2(help.contains(word), word);
}

void tst_RecorderProgram::badOptionsAreTold_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("told");
    const auto row = [](const QStringList &arguments, const char *told) {
        QTest::newRow(qPrintable(arguments.join(' '))) << arguments << QString(told);
    };
    row({"--none"}, "Unknown option 'none'");
    row({"something"}, "Not understood: something");
    row({"--name"}, "Missing value after '--name'");
    row({"--name", QString(64, u'x')}, "A name that is announced has 1 to 63 bytes");
    row({"--service-name", ""}, "A name that is announced has 1 to 63 bytes");
    row({"--takes", "many"}, "--takes takes a number from 0 to 200000");
    row({"--takes", "-1"}, "--takes takes a number from 0 to 200000");
    row({"--takes", "1e9"}, "--takes takes a number from 0 to 200000");
    row({"--takes", "1.5"}, "--takes takes a whole number");
    row({"--takes", "nan"}, "--takes takes a number from 0 to 200000");
    row({"--length", "0"}, "--length takes a number from 0.1 to 86400");
    row({"--port", "65536"}, "--port takes a number from 0 to 65535");
    row({"--printers", "1001"}, "--printers takes a number from 1 to 1000");
    row({"--flap", "0"}, "--flap takes a number from 0.001 to 1000000");
    row({"--leave-after", ""}, "--leave-after takes a number from 0.001 to 1000000");
    row({"--listen", "somewhere"}, "--listen takes an address such as 127.0.0.1");
    row({"--listen", "::1"}, "--listen takes an address such as 127.0.0.1");
    row({"--listen", "203.0.113.7"}, "cannot listen on 203.0.113.7, port 0");
    row({"--folder", "/none/such"}, "--folder: no such folder: /none/such");
    row({"--list-fault", "none"}, "--list-fault: unknown: none");
    row({"--download-fault", "garbage"}, "--download-fault: unknown: garbage");
    row({"--log", "/none/such/log"}, "cannot write /none/such/log");
}

void tst_RecorderProgram::badOptionsAreTold()
{
    QFETCH(const QStringList, arguments);
    QFETCH(const QString, told);
    Program program(arguments);
    QVERIFY(program.end());
    QCOMPARE(program.process.exitCode(), 1);
    QCOMPARE(program.process.readAllStandardOutput(), QByteArray());
    const QString error = QString::fromUtf8(program.process.readAllStandardError());
    QVERIFY2(error.startsWith("qw-recorder-simulator: " + told), qPrintable(error));
}

void tst_RecorderProgram::withoutDaemonItTellsHowItIsFound_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("variable");
    QTest::newRow("by default") << QStringList() << "'Vesk on Studio=%1'";
    QTest::newRow("blue") << QStringList{"--blue", "--name", "Kim's Phone"} << "'Blue Vesk on Kim'\\''s Phone=%1'";
    QTest::newRow("signs of the list") << QStringList{"--service-name", "A;B=50%"} << "'A%3BB=50%25=%1'";
}

void tst_RecorderProgram::withoutDaemonItTellsHowItIsFound()
{
    QFETCH(const QStringList, arguments);
    QFETCH(const QString, variable);
    Program program(arguments);
    const QString address = program.line();
    QVERIFY(QRegularExpression("^http://127\\.0\\.0\\.1:[0-9]+$").match(address).hasMatch());
    QString expected = "QW_NET_SERVICES=" + variable;
    QCOMPARE(program.line(), expected.replace("%1", address.mid(7)));
    QVERIFY(QTest::qWaitFor([&] { return program.process.readAllStandardError().contains("not announced"); }));
    QCOMPARE(Curl::fetched(address + "/list.plist").status, 200);
}

void tst_RecorderProgram::servesWhatItWasTold()
{
    Program program({"--no-announce", "--takes", "3", "--length", "0.5", "--binary", "--without-ffmpeg", "--list-fault",
                     "titles-same", "--list-fault", "no-length", "--download-fault", "cut=5", "--faulty-download",
                     "2"});
    const QString address = program.line();
    const Curl list = Curl::fetched(address + "/list.plist");
    QVERIFY(!list.head.contains("Content-Length"));
    QVERIFY(list.body.startsWith("bplist"));
    const QVariantList takes = PropertyList::fromData(list.body).value_or(QVariant()).toList();
    QCOMPARE(takes.size(), 3);
    QCOMPARE(takes.last().toMap()["title"].toString(), QString("Take"));
    QCOMPARE(takes.last().toMap()["formats"].toStringList(), QStringList({"flac", "vorbis"}));
    const QString download = address + "/download?filename=take-000003&format=aif";
    QVERIFY(Curl::fetched(download).body.size() > 5);
    QCOMPARE(Curl::fetched(download).body.size(), 5);
}

void tst_RecorderProgram::takenPortIsTold()
{
    Program first({"--no-announce"});
    const QString port = first.line().section(u':', -1);
    Program second({"--no-announce", "--port", port});
    QVERIFY(second.end());
    QCOMPARE(second.process.readAllStandardError().trimmed(),
             QString("qw-recorder-simulator: cannot listen on 127.0.0.1, port %1").arg(port).toUtf8());
}

void tst_RecorderProgram::logHoldsRequestsAsTheyCame()
{
    QTemporaryDir folder;
    Program program({"--no-announce", "--log", folder.filePath("log")});
    const QString address = program.line();
    Curl::fetched(address + "/download?filename=a%20b%2f&format=wav");
    Curl::fetched(address + "/list.plist", {"--head"});
    QCOMPARE(Curl::contentsOf(folder.filePath("log")),
             QByteArray("GET /download?filename=a%20b%2f&format=wav HTTP/1.1\nHEAD /list.plist HTTP/1.1\n"));
}

void tst_RecorderProgram::leavesAfterAWhile()
{
    Program program({"--leave-after", "0.1"});
    const QString address = program.line();
    QString line = program.line();
    if (line.startsWith("QW_NET_SERVICES"))
        line = program.line();
    QCOMPARE(line, QString("Left"));
    QCOMPARE(Curl::fetched(address + "/list.plist").exitCode, 7); // nobody there
}

void tst_RecorderProgram::leavesNothingBehind()
{
    Program program({"--no-announce"});
    const QString address = program.line();
    QCOMPARE(Curl::fetched(address + "/download?filename=take-000001&format=wav").status, 200);
    const auto entries = [&] { return QDir(program.folder.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot); };
    QVERIFY(!entries().isEmpty());
    program.process.terminate();
    QVERIFY(program.end());
    QCOMPARE(program.process.exitCode(), 0);
    QCOMPARE(entries(), QStringList());
}

QTEST_GUILESS_MAIN(tst_RecorderProgram)
#include "tst_RecorderProgram.moc"

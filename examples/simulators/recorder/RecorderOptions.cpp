#include "RecorderOptions.h"

#include <QCommandLineParser>
#include <QDir>

#include <algorithm>
#include <limits>

namespace
{
constexpr double greatestWhole = std::numeric_limits<int>::max();

QList<QCommandLineOption> knownOptions()
{
    return {
        {{"h", "help"}, "Tells this."},
        {"name", "Name of the handset, announced behind \"Vesk on \"; Studio without this.", "name", "Studio"},
        {"blue", "Plays the blue edition, which has the uncompressed formats only."},
        {"service-name", "Name that is announced, instead of one made of --name and --blue.", "name"},
        {"folder", "Serves the sound files of this folder, instead of made-up takes.", "folder"},
        {"takes", "Number of made-up takes, up to 200000; 12 without this.", "number", "12"},
        {"length", "Length of each made-up take in seconds; otherwise from 2 to 30.", "seconds"},
        {"without-ffmpeg", "Behaves as if ffmpeg were missing: without AAC, podcast, Apple Lossless."},
        {"binary", "Writes the list in the binary form."},
        {"listen", "Address to listen and to announce on; 0.0.0.0 is every one, 127.0.0.1 is it without this.",
         "address", "127.0.0.1"},
        {"port", "Port to listen on; 0, or none told, takes a free one.", "number", "0"},
        {"no-announce", "Is not announced, only there."},
        {"log", "File that gets the first line of each request as it came; - is standard error.", "file"},
        {"list-fault", "What is wrong with the list, see above; may come several times.", "fault"},
        {"download-fault", "What is wrong with downloads, see above; may come several times.", "fault"},
        {"faulty-download", "The only download that has the faults, from 1 on.", "number"},
        {"leave-at-download", "Goes away in the middle of this download, from 1 on.", "number"},
        {"leave-after", "Goes away after so long.", "seconds"},
        {"flap", "Comes and goes, after so long each.", "seconds"},
        {"unresolvable", "Is listed, and nobody says where it is."},
        {"printers", "Announces so many other services, up to 1000.", "number"},
    };
}

/// Reads values; the first one that cannot be followed is told.
class ValueReader
{
public:
    ValueReader(const QCommandLineParser &parser, QString &problem)
        : m_parser(parser)
        , m_problem(problem)
    {
    }

    double number(const QString &option, double least, double greatest)
    {
        if (m_parser.value(option).isEmpty() && !m_parser.isSet(option))
            return 0;
        bool isNumber = false;
        const double number = m_parser.value(option).toDouble(&isNumber);
        if (!isNumber || !(number >= least) || number > greatest)
            tell(QString("--%1 takes a number from %2 to %3").arg(option).arg(least).arg(greatest, 0, 'f', 0));
        return m_problem.isEmpty() ? number : 0;
    }

    int whole(const QString &option, int least, double greatest)
    {
        const double value = number(option, least, greatest);
        if (value != static_cast<int>(value))
            tell(QString("--%1 takes a whole number").arg(option));
        return static_cast<int>(value);
    }

    std::chrono::milliseconds seconds(const QString &option)
    {
        return std::chrono::milliseconds(static_cast<qint64>(1000 * number(option, 0.001, 1e6)));
    }

    void tell(const QString &problem)
    {
        if (m_problem.isEmpty())
            m_problem = problem;
    }

private:
    const QCommandLineParser &m_parser;
    QString &m_problem;
};

QString serviceName(const QCommandLineParser &parser)
{
    if (parser.isSet("service-name"))
        return parser.value("service-name");
    return (parser.isSet("blue") ? "Blue Vesk on " : "Vesk on ") + parser.value("name");
}

RecorderPresenceSettings presenceOf(const QCommandLineParser &parser, ValueReader &values)
{
    RecorderPresenceSettings presence;
    presence.serviceName = serviceName(parser);
    const qsizetype size = presence.serviceName.toUtf8().size();
    if (size < 1 || size > 63)
        values.tell("A name that is announced has 1 to 63 bytes");
    presence.where = QHostAddress(parser.value("listen"));
    if (presence.where == QHostAddress(QHostAddress::AnyIPv4))
        presence.where = QHostAddress::Any;
    else if (presence.where.protocol() != QAbstractSocket::IPv4Protocol)
        values.tell("--listen takes an address such as 127.0.0.1");
    presence.resolves = !parser.isSet("unresolvable");
    presence.printers = values.whole("printers", 1, ServiceAnnouncer::mostServices);
    presence.leavesAfter = values.seconds("leave-after");
    presence.flaps = values.seconds("flap");
    return presence;
}

void readListFault(const QString &text, RecorderOptions &options, ValueReader &values)
{
    const auto ofList = ListFault::named(text);
    const auto ofAnswer = AnswerFault::named(text);
    if (ofList)
        options.list.faults.push_back(*ofList);
    else if (ofAnswer)
        options.listFaults.push_back(*ofAnswer);
    else
        values.tell(QString("--list-fault: unknown: %1").arg(text));
}

void readFaults(const QCommandLineParser &parser, RecorderOptions &options, ValueReader &values)
{
    for (const QString &text : parser.values("list-fault"))
        readListFault(text, options, values);
    for (const QString &text : parser.values("download-fault")) {
        if (const auto fault = AnswerFault::named(text))
            options.downloadFaults.push_back(*fault);
        else
            values.tell(QString("--download-fault: unknown: %1").arg(text));
    }
    options.faultyDownload = values.whole("faulty-download", 1, greatestWhole);
    options.leavesAtDownload = values.whole("leave-at-download", 1, greatestWhole);
}

void readTakes(const QCommandLineParser &parser, RecorderOptions &options, ValueReader &values)
{
    options.folder = parser.value("folder");
    if (parser.isSet("folder") && !QDir(options.folder).exists())
        values.tell(QString("--folder: no such folder: %1").arg(options.folder));
    options.takes = values.whole("takes", 0, 200000);
    options.length = values.number("length", 0.1, 86400);
    options.usesProgram = !parser.isSet("without-ffmpeg");
}

void setUp(QCommandLineParser &parser)
{
    parser.setApplicationDescription(
        "Plays a handheld recorder on the network: announces itself, lists its takes and hands them out in ten "
        "formats. "
        "Prints its address. Where there is no Avahi daemon it prints what to set for hosts that shall find it "
        "nevertheless.\n\n"
        "Faults of lists and downloads. The answer ...\n" +
        AnswerFault::help() + "\nFaults of lists. The list ...\n" + ListFault::help());
    parser.addOptions(knownOptions());
}
} // namespace

bool RecorderOptions::read(const QStringList &arguments)
{
    QCommandLineParser parser;
    setUp(parser);
    if (!parser.parse(arguments)) {
        m_problem = parser.errorText();
        return false;
    }
    ValueReader values(parser, m_problem);
    wantsHelp = parser.isSet("help");
    presence = presenceOf(parser, values);
    isAnnounced = !parser.isSet("no-announce");
    port = static_cast<quint16>(values.whole("port", 0, 65535));
    list.isBlue = parser.isSet("blue");
    list.isBinary = parser.isSet("binary");
    log = parser.value("log");
    readTakes(parser, *this, values);
    readFaults(parser, *this, values);
    if (!parser.positionalArguments().isEmpty())
        values.tell("Not understood: " + parser.positionalArguments().first());
    return m_problem.isEmpty();
}

QString RecorderOptions::help()
{
    QCommandLineParser parser;
    setUp(parser);
    return parser.helpText();
}

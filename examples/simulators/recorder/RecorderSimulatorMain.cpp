#include "RecorderOptions.h"
#include "RecorderPresence.h"
#include "RecorderSimulator.h"

#include <simulators/EndOnSignals.h>
#include <simulators/EndWithParent.h>
#include <simulators/recorder/takes/MadeUpTakes.h>
#include <simulators/recorder/takes/TakesInFolder.h>

#include <QCoreApplication>
#include <QFile>
#include <QTextStream>

#include <optional>
#include <sys/resource.h>

namespace
{
int fail(const QString &message)
{
    QTextStream(stderr) << "qw-recorder-simulator: " << message << Qt::endl;
    return 1;
}

void print(const QString &line)
{
    QTextStream(stdout) << line << Qt::endl;
}

/// Thousands may be connected, each with a file.
void allowManyFiles()
{
    rlimit files{};
    ::getrlimit(RLIMIT_NOFILE, &files);
    files.rlim_cur = files.rlim_max;
    ::setrlimit(RLIMIT_NOFILE, &files);
}

void setUp(RecorderSimulator &recorder, const RecorderOptions &options, const QString &program)
{
    recorder.setTakes(
        options.folder.isEmpty()
            ? MadeUpTakes::takes({.count = options.takes, .length = options.length, .withProgram = !program.isEmpty()})
            : takesInFolder(options.folder, !program.isEmpty()));
    recorder.setList(options.list);
    for (const AnswerFault &fault : options.listFaults)
        recorder.addListFault(fault);
    for (const AnswerFault &fault : options.downloadFaults)
        recorder.addDownloadFault(fault, options.faultyDownload);
    recorder.setLeavesAtDownload(options.leavesAtDownload);
}

bool logTo(const QString &path, RecorderSimulator &recorder)
{
    auto *const file = new QFile(path, &recorder);
    const bool isOpen =
        path == "-" ? file->open(stderr, QIODevice::WriteOnly) : file->open(QIODevice::WriteOnly | QIODevice::Append);
    QObject::connect(&recorder, &HttpServer::lineReceived, file, [file](const QByteArray &line) {
        file->write(line + '\n');
        file->flush();
    });
    return isOpen;
}

QString quotedForShell(QString text)
{
    return "'" + text.replace("'", "'\\''") + "'";
}

/// For hosts that cannot hear of it.
QString variableFor(const RecorderOptions &options, const RecorderSimulator &recorder)
{
    QString name = options.presence.serviceName;
    name.replace("%", "%25").replace(";", "%3B");
    const QString place = recorder.address().mid(QString("http://").size());
    return "QW_NET_SERVICES=" + quotedForShell(name + '=' + place);
}

void tellOf(RecorderPresence &presence, const QString &variable)
{
    QObject::connect(&presence, &RecorderPresence::announced, &presence,
                     [](const QString &name) { print("Announced: " + name); });
    QObject::connect(&presence, &RecorderPresence::failed, &presence, [variable](const QString &reason) {
        fail("not announced: " + reason + ". Hosts find it that are started with");
        print(variable);
    });
}
} // namespace

int main(int argc, char **argv)
{
    endWithParent();
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName("qw-recorder-simulator");
    RecorderOptions options;
    if (!options.read(QCoreApplication::arguments()))
        return fail(options.problem() + ". --help tells the options.");
    if (options.wantsHelp) {
        print(RecorderOptions::help());
        return 0;
    }
    endOnSignals(application);
    allowManyFiles();

    const QString program = options.usesProgram ? RecorderSimulator::installedProgram() : QString();
    RecorderSimulator recorder(program);
    setUp(recorder, options, program);
    if (!options.log.isEmpty() && !logTo(options.log, recorder))
        return fail("cannot write " + options.log);
    if (!recorder.listen(options.presence.where, options.port))
        return fail(QString("cannot listen on %1, port %2").arg(options.presence.where.toString()).arg(options.port));
    print(recorder.address());
    QObject::connect(&recorder, &RecorderSimulator::left, &application, [] { print("Left"); });

    std::optional<RecorderPresence> presence;
    if (options.isAnnounced) {
        presence.emplace(recorder, options.presence);
        tellOf(*presence, variableFor(options, recorder));
    } else {
        print(variableFor(options, recorder));
    }
    return QCoreApplication::exec();
}

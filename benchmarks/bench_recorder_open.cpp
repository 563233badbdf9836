#include <network/PrivateAvahi.h>
#include <simulators/recorder/RecorderSimulator.h>
#include <simulators/recorder/takes/MadeUpTakes.h>

#include <QCoreApplication>
#include <QEventLoop>
#include <QProcess>

#include <algorithm>
#include <array>
#include <cstdio>
#include <vector>

namespace
{
constexpr int rounds = 21;
constexpr int takes = 100;

/// What the program says that it took, in milliseconds. The recorder answers meanwhile.
double millisecondsOf(const QString &program)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    QEventLoop loop;
    QObject::connect(&process, &QProcess::finished, &loop, &QEventLoop::quit);
    process.start(QCoreApplication::applicationDirPath() + '/' + program, {QString::number(takes)});
    if (!process.waitForStarted())
        qFatal("%s does not start", qPrintable(program));
    loop.exec();
    if (process.exitCode() != 0)
        qFatal("%s failed", qPrintable(program));
    return process.readAllStandardOutput().trimmed().toDouble();
}

double median(std::vector<double> values)
{
    std::nth_element(values.begin(), values.begin() + static_cast<long>(values.size() / 2), values.end());
    return values[values.size() / 2];
}
} // namespace

/// From the opening of the window to listed takes: a recorder on the loopback device, announced by an Avahi daemon in a
/// network of the program's own. In turn with a bare client, so that both see the same machine.
int main(int argc, char **argv)
{
    PrivateAvahi::enterPrivateNetwork();
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QCoreApplication application(argc, argv);
    PrivateAvahi avahi;
    RecorderSimulator recorder;
    recorder.setTakes(MadeUpTakes::takes({.count = takes}));
    if (!recorder.listen() || !avahi.startBus() || !avahi.startDaemon() ||
        !avahi.announce("Vesk on Studio", recorder.port()))
        return 1;
    constexpr std::array programs{"recorder_open_host", "recorder_open_bare"};
    std::array<std::vector<double>, 2> times;
    for (int round = -2; round < rounds; ++round) // the first ones warm caches
        for (std::size_t i = 0; i < programs.size(); ++i)
            if (const double time = millisecondsOf(programs.at(i)); round >= 0)
                times.at(i).push_back(time);
    std::printf("{\"benchmarks\": [\n");
    constexpr std::array names{"ours", "baseline"};
    for (std::size_t i = 0; i < names.size(); ++i)
        std::printf("{\"name\": \"recorder-open/%s\", \"time_unit\": \"ms\", \"real_time\": %f}%s\n", names.at(i),
                    median(times.at(i)), i == 0 ? "," : "]}");
}

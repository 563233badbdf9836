#include "fakes/FakeSystem.h"

#include <QWBase/QWApplication.h>
#include <QWPlatform/machine/SystemServices.h>
#include <QWUtilities/plugins/QWVSTManager.h>

#include <benchmark/benchmark.h>

#include <QDir>
#include <QFile>

#include <chrono>
#include <dirent.h>
#include <spawn.h>
#include <string>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

extern char **environ;

using platform::ChildProcessRequest;
using platform::SystemScope;
using platform::SystemServices;

namespace
{
constexpr int folderCount = 50;
constexpr int bundlesAFolder = 20;

std::string stubValidator;

template <class Work>
double seconds(Work work)
{
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

/// A machine with 1,000 bundles whose validator only writes a hand-off file, run for real.
class Machine
{
public:
    Machine()
        : m_processes(*SystemServices::current().childProcesses)
        , m_scope(system)
    {
        for (int i = 0; i < folderCount * bundlesAFolder; ++i)
            system.addVSTBundle(
                QString("/Library/Audio/Plug-Ins/VST/Maker %1/Plug-in %2.vst").arg(i % folderCount).arg(i));
        const QString handOff = system.real("~/Library/Application Support/Quorwell/validated_vst.plist");
        system.makeDirectory("~/Library/Application Support/Quorwell");
        system.processes.handler = [this, handOff](ChildProcessRequest request) {
            request.launchPath = QString::fromStdString(stubValidator);
            request.arguments = QStringList{handOff};
            return m_processes.run(request);
        };
    }

    void scan()
    {
        QWVSTManager manager;
        manager.validate();
        if (manager.database().size() != folderCount * bundlesAFolder || !system.alerts.shown.isEmpty())
            std::abort();
    }

    void forget() { QFile::remove(system.real("~/Library/Application Support/Quorwell/vst_db.plist")); }

    FakeSystem system;

private:
    platform::ChildProcesses &m_processes;
    SystemScope m_scope;
};

/// One for all measures: the disk takes longer to make a file the more of them were removed of late, so the removal of
/// a machine of thousands of files would be measured with what comes next.
Machine *machine;

void firstScan(benchmark::State &state, std::size_t ballast)
{
    const std::vector<char> memory(ballast, 1); // what a large host has in memory
    benchmark::DoNotOptimize(memory.data());
    for (auto _ : state) {
        machine->forget();
        machine->system.processes.runs.clear();
        state.SetIterationTime(seconds([] { machine->scan(); }));
    }
}

void runStub(std::string &handOff)
{
    char *arguments[] = {stubValidator.data(), handOff.data(), nullptr};
    pid_t child = -1;
    int status = -1;
    if (posix_spawn(&child, arguments[0], nullptr, nullptr, arguments, environ) != 0 ||
        waitpid(child, &status, 0) != child || status != 0)
        std::abort();
}

/// Each child makes a file of its own, as in a scan, whose manager deletes the file each time: cutting an old file to
/// length would cost more than making a new one.
void bareChildren(benchmark::State &state)
{
    const FakeSystem &disk = machine->system;
    disk.makeDirectory("~/hand-offs");
    const std::string folder = disk.real("~/hand-offs/").toStdString();
    static int made = 0;
    for (auto _ : state)
        state.SetIterationTime(seconds([&] {
            for (int i = 0; i < folderCount * bundlesAFolder; ++i) {
                std::string handOff = folder + std::to_string(made++);
                runStub(handOff);
            }
        }));
}

void unchangedScan(benchmark::State &state)
{
    machine->scan();
    machine->system.processes.runs.clear();
    QWVSTManager manager;
    for (auto _ : state)
        state.SetIterationTime(seconds([&] { manager.validate(); }));
    if (!machine->system.processes.runs.empty())
        state.SkipWithError("something was tried again");
}

/// Bundles below @p folder, each looked at once.
int walk(const std::string &folder)
{
    int found = 0;
    DIR *open = opendir(folder.c_str());
    while (const dirent *entry = open ? readdir(open) : nullptr) {
        const std::string name = entry->d_name;
        const std::string path = folder + '/' + name;
        struct stat status;
        if (name.ends_with(".vst"))
            found += stat(path.c_str(), &status) == 0;
        else if (name[0] != '.' && entry->d_type == DT_DIR)
            found += walk(path);
    }
    if (open)
        closedir(open);
    return found;
}

void bareWalk(benchmark::State &state)
{
    const std::string folder = machine->system.real("/Library/Audio/Plug-Ins/VST").toStdString();
    for (auto _ : state)
        state.SetIterationTime(seconds([&] {
            if (walk(folder) != folderCount * bundlesAFolder)
                std::abort();
        }));
}
} // namespace

int main(int argc, char **argv)
{
    using benchmark::RegisterBenchmark;
    stubValidator = QFile::symLinkTarget("/proc/self/exe").section('/', 0, -2).toStdString() + "/stub_validator";
    const QWApplication application(argc, argv);
    Machine theMachine;
    machine = &theMachine;
    const auto tune = [](auto *b) { b->UseManualTime()->Unit(benchmark::kMillisecond); };
    tune(RegisterBenchmark("first-scan/ours", firstScan, std::size_t(0)));
    tune(RegisterBenchmark("first-scan/baseline", bareChildren));
    tune(RegisterBenchmark("first-scan-large-host/ours", firstScan, std::size_t(512) << 20));
    tune(RegisterBenchmark("first-scan-large-host/baseline", bareChildren));
    tune(RegisterBenchmark("unchanged-scan/ours", unchangedScan));
    tune(RegisterBenchmark("unchanged-scan/baseline", bareWalk));
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}

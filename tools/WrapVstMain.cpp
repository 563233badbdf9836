// qw-wrap-vst: makes bare VST libraries visible to the hosts, as ".vst" bundles in the user's VST folder.
#include "VstLibraryFinder.h"
#include "VstOwnName.h"
#include "VstWrappers.h"

#include <QWPlatform/System.h>
#include <QWPlatform/foundation/Locations.h>
#include <QWPlatform/foundation/files/LockFile.h>
#include <QWPlatform/foundation/processes/ChildProcesses.h>
#include <QWPlatform/machine/SystemServices.h>

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDir>

#include <chrono>
#include <cstdio>
#include <optional>
#include <string_view>

namespace
{
constexpr auto description = "Wraps the VST libraries of the usual folders (VST_PATH, ~/.vst, ~/.lxvst, /usr/lib/vst, "
                             "…) as bundles in \"~/Library/Audio/Plug-Ins/VST\", and keeps these up to date: a changed "
                             "library is validated again, and the bundle of a library that is gone is removed.";
constexpr int moreToDo = 3; // exit status
constexpr std::chrono::seconds lockPatience(30);
constexpr auto wrongArgument = "qw-wrap-vst: \"%s\" is no option; folders follow --folder.\n";

void print(const char *what, const QStringList &paths)
{
    for (const QString &path : paths)
        std::printf("%s %s\n", what, qUtf8Printable(path));
}

void printDetails(const VstWrappers::Summary &summary)
{
    print("added  ", summary.added);
    print("updated", summary.updated);
    print("removed", summary.removed);
}

void printSummary(const VstWrappers::Summary &summary, bool isDryRun)
{
    std::printf("%s%d added, %d updated, %d removed, %d unchanged, %d failed", isDryRun ? "Would be: " : "",
                int(summary.added.size()), int(summary.updated.size()), int(summary.removed.size()), summary.unchanged,
                int(summary.failed.size()));
    std::printf(summary.left > 0 ? ", %d left\n" : "\n", summary.left);
}

QString askForName(const QString &library)
{
    return VstOwnName::ask(*platform::SystemServices::current().childProcesses, QCoreApplication::applicationFilePath(),
                           library);
}

/// Two at a time would make two bundles of one library.
bool lockFolder(platform::LockFile &lock, std::chrono::seconds patience)
{
    return lock.acquire({patience, patience}) || !lock.isHeldByOthers();
}

/// What the command line asks for.
struct Wishes
{
    bool isDryRun = false;
    bool isQuiet = false;
    QStringList folders; ///< Empty: the usual ones.
    std::optional<std::chrono::seconds> time;
};

/// Ends the program when the command line asks for help or for what there is not.
std::optional<Wishes> wishesOf(const QCoreApplication &application)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(description);
    parser.addHelpOption();
    parser.addVersionOption();
    const QCommandLineOption dryRun("dry-run", "Only tell what would be done.");
    const QCommandLineOption quiet("quiet", "Print the summary only.");
    const QCommandLineOption folder("folder", "Look in <folder> instead of the usual folders; may be repeated.",
                                    "folder");
    const QCommandLineOption time("seconds", "Stop after about so many; with exit status 3 there is more to do.",
                                  "seconds");
    parser.addOptions({dryRun, quiet, folder, time});
    parser.process(application);
    if (const QStringList words = parser.positionalArguments(); !words.isEmpty()) {
        std::fprintf(stderr, wrongArgument, qUtf8Printable(words.first()));
        return std::nullopt;
    }
    Wishes wishes{parser.isSet(dryRun), parser.isSet(quiet), parser.values(folder), {}};
    if (parser.isSet(time))
        wishes.time = std::chrono::seconds(parser.value(time).toUInt());
    return wishes;
}

VstWrappers::Summary wrap(const platform::Locations &locations, const Wishes &wishes)
{
    VstWrappers wrappers(locations.mapped("~/Library/Audio/Plug-Ins/VST"),
                         wishes.isDryRun ? VstWrappers::Mode::DryRun : VstWrappers::Mode::Change, askForName);
    if (wishes.time)
        wrappers.setTimeLimit([end = QDeadlineTimer(*wishes.time)] { return end.hasExpired(); });
    return wrappers.update(VstLibraryFinder::candidates(
        wishes.folders.isEmpty() ? VstLibraryFinder::usualFolders(locations.home()) : wishes.folders));
}

/// Where nothing could be done, as in a folder that takes no files, another run would do no more.
int exitStatus(const VstWrappers::Summary &summary)
{
    const bool wasAnyDone = !(summary.added + summary.updated).isEmpty();
    return summary.left > 0 && wasAnyDone ? moreToDo : summary.failed.isEmpty() ? 0 : 1;
}
} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationVersion(QW_VERSION);
    if (argc == 3 && std::string_view(argv[1]) == VstOwnName::option)
        VstOwnName::print(QCoreApplication::arguments().at(2));
    const auto wishes = wishesOf(application);
    if (!wishes)
        return 1;
    const platform::Locations &locations = platform::System::current().locations();
    const QString support = locations.mapped("~/Library/Application Support/Quorwell/");
    QDir().mkpath(support);
    platform::LockFile lock(support + "vst_wrappers.lock");
    if (!wishes->isDryRun && !lockFolder(lock, wishes->time.value_or(lockPatience))) {
        std::fprintf(stderr, "qw-wrap-vst: another one is at work.\n");
        return 1;
    }
    const VstWrappers::Summary summary = wrap(locations, *wishes);
    if (!wishes->isQuiet)
        printDetails(summary);
    printSummary(summary, wishes->isDryRun);
    for (const QString &path : summary.failed)
        std::fprintf(stderr, "qw-wrap-vst: could not wrap or remove %s\n", qUtf8Printable(path));
    return exitStatus(summary);
}

// qw-wrap-vst: makes bare VST libraries visible to the hosts, as ".vst" bundles in the user's VST folder.
#include "VstLibraryFinder.h"
#include "VstWrappers.h"

#include <QWPlatform/System.h>
#include <QWPlatform/foundation/Locations.h>

#include <QCommandLineParser>
#include <QCoreApplication>

#include <cstdio>

namespace
{
constexpr auto description = "Wraps the VST libraries of the usual folders (VST_PATH, ~/.vst, ~/.lxvst, /usr/lib/vst, "
                             "…) as bundles in \"~/Library/Audio/Plug-Ins/VST\", and keeps these up to date: a changed "
                             "library is validated again, and the bundle of a library that is gone is removed.";
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
    std::printf("%s%d added, %d updated, %d removed, %d unchanged, %d failed\n", isDryRun ? "Would be: " : "",
                int(summary.added.size()), int(summary.updated.size()), int(summary.removed.size()), summary.unchanged,
                int(summary.failed.size()));
}
} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationVersion(QW_VERSION);
    QCommandLineParser parser;
    parser.setApplicationDescription(description);
    parser.addHelpOption();
    parser.addVersionOption();
    const QCommandLineOption dryRun("dry-run", "Only tell what would be done.");
    const QCommandLineOption quiet("quiet", "Print the summary only.");
    const QCommandLineOption folder("folder", "Look in <folder> instead of the usual folders; may be repeated.",
                                    "folder");
    parser.addOptions({dryRun, quiet, folder});
    parser.process(application);
    if (const QStringList words = parser.positionalArguments(); !words.isEmpty()) {
        std::fprintf(stderr, wrongArgument, qUtf8Printable(words.first()));
        return 1;
    }

    const platform::Locations &locations = platform::System::current().locations();
    const QStringList folders =
        parser.isSet(folder) ? parser.values(folder) : VstLibraryFinder::usualFolders(locations.home());
    VstWrappers wrappers(locations.mapped("~/Library/Audio/Plug-Ins/VST"),
                         parser.isSet(dryRun) ? VstWrappers::Mode::DryRun : VstWrappers::Mode::Change);
    const VstWrappers::Summary summary = wrappers.update(VstLibraryFinder::candidates(folders));
    if (!parser.isSet(quiet))
        printDetails(summary);
    printSummary(summary, parser.isSet(dryRun));
    for (const QString &path : summary.failed)
        std::fprintf(stderr, "qw-wrap-vst: could not wrap or remove %s\n", qUtf8Printable(path));
    return summary.failed.isEmpty() ? 0 : 1;
}

#include "Validator.h"

#include "HandOff.h"
#include "HostProcess.h"
#include "Isolation.h"
#include "PluginTrial.h"
#include "TrialJudgement.h"
#include "TrialProcess.h"
#include "TrialReport.h"
#include "ValidatorOptions.h"
#include "Watchdog.h"

#include <QWPlatform/System.h>
#include <QWPlatform/foundation/Locations.h>
#include <QWPlatform/foundation/PropertyList.h>

#include <QCoreApplication>

#include <algorithm>
#include <cstdio>

namespace
{
constexpr double usualPatience = 30; // seconds
constexpr double longestPatience = 7 * 24 * 3600;
constexpr auto defaultsPath = "~/Library/Preferences/com.quorwell.validators.plist";
constexpr auto patienceKey = "QWValidatorWatchdog";

constexpr auto help = R"(Usage: %s [--watchdog SECONDS] %s
%s
Opens one plug-in and runs a few blocks of sound through it. If all goes well, it leaves
"%s" for the host; otherwise, nothing.

  --watchdog SECONDS  give up when nothing moves for so long. Without it, the number "%s" in
                      "%s" counts, else 30.
  --help, --version   print this text, or the version, and end

Everything is printed to standard error. Exit status: 0 passed, 1 failed, 2 wrong usage, 3 hangs.
)";

double patience(const ValidatorOptions &options)
{
    if (options.watchdog > 0)
        return options.watchdog;
    const QString path = platform::System::current().locations().mapped(defaultsPath);
    const auto defaults = platform::PropertyList::dictionaryFromFile(path);
    const double stored = defaults ? defaults->value(patienceKey).toDouble() : 0;
    return stored > 0 ? stored : usualPatience;
}

void printHelp(const Validator &validator)
{
    std::fprintf(stderr, help, validator.name, validator.argumentsHelp, validator.argumentsMeaning,
                 validator.handOffPath, patienceKey, defaultsPath);
}

/// Why the command line makes no sense; "" when it does.
QString complaint(const Validator &validator, const ValidatorOptions &options)
{
    const auto count = options.arguments.size();
    if (!options.error.isEmpty() || count == validator.argumentCount)
        return options.error;
    const auto form = count < validator.argumentCount ? QStringLiteral("needs %1") : QStringLiteral("takes %1 only");
    return form.arg(QLatin1StringView(validator.argumentsHelp));
}

/// What all sentences about the plug-in begin with: the command line, to be tried again.
QByteArray subjectOf(const Validator &validator, const ValidatorOptions &options)
{
    return QByteArray(validator.name) + ": " + options.arguments.join(' ').toUtf8();
}

/// Tries the plug-in in this process, which nothing of it then outlives.
[[noreturn]] void tryHere(const Validator &validator, const ValidatorOptions &options, const TrialPace &pace,
                          TrialReport &report)
{
    limitMemory();
    const auto seconds = std::chrono::duration<double>(std::min(patience(options), longestPatience));
    Watchdog watchdog{seconds, subjectOf(validator, options), report.step};
    const PluginTrial trial(watchdog, pace);
    report.tell(validator.validate(options.arguments, trial));
    endProcess(ValidatorStatus::Passed);
}

/// Tries the plug-in in a child process, a second time with more patience when the first says too little of it, and
/// ends this one.
[[noreturn]] void tryAndEnd(const Validator &validator, const ValidatorOptions &options)
{
    const QByteArray subject = subjectOf(validator, options);
    const auto say = [&](const QByteArray &text) {
        std::fprintf(stderr, "%s: %s\n", subject.constData(), text.data());
    };
    TrialJudgement judgement;
    for (const TrialPace &pace : {usualPace, patientPace}) {
        const auto report = TrialReport::make();
        const int status = report ? runInChild([&] { tryHere(validator, options, pace, *report); }) : -1;
        judgement = TrialJudgement::of(report.get(), status);
        if (!judgement.reason.isEmpty())
            say(judgement.reason);
        if (!judgement.isPremature || !isHostThere())
            break;
    }
    if (judgement.status == ValidatorStatus::Passed && !writeHandOff(validator.handOffPath, judgement.handOff)) {
        say("The result cannot be written.");
        judgement.status = ValidatorStatus::Failed;
    }
    endProcess(judgement.status);
}
} // namespace

void Validator::run(int argc, char **argv) const
{
    isolateProcess();
    followHost();
    const QCoreApplication application(argc, argv);
    const ValidatorOptions options = ValidatorOptions::fromArguments(QCoreApplication::arguments().mid(1));
    if (options.version)
        std::fprintf(stderr, "%s %s\n", name, QW_VERSION);
    else if (options.help)
        printHelp(*this);
    if (options.version || options.help)
        endProcess(ValidatorStatus::Passed);
    const QString wrong = complaint(*this, options);
    if (wrong.isEmpty())
        tryAndEnd(*this, options);
    std::fprintf(stderr, "%s: %s\n", name, qUtf8Printable(wrong));
    printHelp(*this);
    endProcess(ValidatorStatus::WrongUsage);
}

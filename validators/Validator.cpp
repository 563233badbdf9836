#include "Validator.h"

#include "HandOff.h"
#include "Isolation.h"
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
Opens one plug-in and runs a few blocks of sound through it. If all goes well, "%s"
is written for the host; nothing is written otherwise.

  --watchdog SECONDS  give up when nothing moves for so long; without it, the number "%s"
                      in "%s", else 30
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

ValidatorStatus answerWithoutPlugin(const Validator &validator, const ValidatorOptions &options)
{
    if (!options.error.isEmpty())
        std::fprintf(stderr, "%s: %s\n", validator.name, qUtf8Printable(options.error));
    if (options.version)
        std::fprintf(stderr, "%s %s\n", validator.name, QW_VERSION);
    else
        std::fprintf(stderr, help, validator.name, validator.argumentsHelp, validator.handOffPath, patienceKey,
                     defaultsPath);
    return options.help || options.version ? ValidatorStatus::Passed : ValidatorStatus::WrongUsage;
}

/// What all sentences about the plug-in begin with: the command line, to be tried again.
QByteArray subjectOf(const Validator &validator, const ValidatorOptions &options)
{
    return QByteArray(validator.name) + ": " + options.arguments.join(' ').toUtf8();
}

/// Ends the process, so that nothing of the plug-in runs afterwards.
[[noreturn]] void tryAndEnd(const Validator &validator, const ValidatorOptions &options)
{
    const QByteArray subject = subjectOf(validator, options);
    Watchdog watchdog{std::chrono::duration<double>(std::min(patience(options), longestPatience)), subject};
    QString error;
    const QVariantMap state = validator.validate(options.arguments, watchdog, &error);
    if (error.isEmpty() && !writeHandOff(validator.handOffPath, state))
        error = QStringLiteral("The result cannot be written.");
    if (!error.isEmpty())
        std::fprintf(stderr, "%s: %s\n", subject.constData(), qUtf8Printable(error));
    endProcess(error.isEmpty() ? ValidatorStatus::Passed : ValidatorStatus::Failed);
}
} // namespace

void Validator::run(int argc, char **argv) const
{
    isolateProcess();
    const QCoreApplication application(argc, argv);
    const ValidatorOptions options = ValidatorOptions::fromArguments(QCoreApplication::arguments().mid(1));
    const bool isComplete = options.error.isEmpty() && options.arguments.size() == argumentCount;
    if (options.help || options.version || !isComplete)
        endProcess(answerWithoutPlugin(*this, options));
    tryAndEnd(*this, options);
}

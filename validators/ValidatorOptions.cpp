#include "ValidatorOptions.h"

#include <cmath>

namespace
{
double seconds(const QString &text, QString &error)
{
    bool isNumber = false;
    const double value = text.toDouble(&isNumber);
    if (isNumber && std::isfinite(value) && value > 0)
        return value;
    error = "--watchdog needs a number of seconds above 0";
    return 0;
}
} // namespace

ValidatorOptions ValidatorOptions::fromArguments(const QStringList &arguments)
{
    ValidatorOptions options;
    for (auto argument = arguments.begin(); argument != arguments.end(); ++argument) {
        if (*argument == "--help")
            options.help = true;
        else if (*argument == "--version")
            options.version = true;
        else if (*argument == "--watchdog")
            options.watchdog = seconds(std::next(argument) == arguments.end() ? QString() : *++argument, options.error);
        else if (argument->startsWith("--"))
            options.error = "unknown option " + *argument;
        else
            options.arguments += *argument;
    }
    return options;
}

#pragma once

#include <QStringList>
#include <QVariantMap>

class Watchdog;

/// What differs between the two validator programs.
struct Validator
{
    const char *name;
    const char *argumentsHelp;    ///< As in "PATH".
    const char *argumentsMeaning; ///< A sentence for the help text.
    int argumentCount;
    const char *handOffPath; ///< Documented text.

    /// Tries the plug-in that @p arguments name; its state dictionary, or an empty one and the reason in @p error.
    QVariantMap (*validate)(const QStringList &arguments, Watchdog &watchdog, QString *error);

    /// Does what the command line says and ends the process.
    [[noreturn]] void run(int argc, char **argv) const;
};

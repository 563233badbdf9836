#pragma once

#include "TrialOutcome.h"

#include <QStringList>

class PluginTrial;

/// What differs between the two validator programs.
struct Validator
{
    const char *name;
    const char *argumentsHelp;    ///< As in "PATH".
    const char *argumentsMeaning; ///< A sentence for the help text.
    int argumentCount;
    const char *handOffPath; ///< Documented text.

    /// Puts the plug-in that @p arguments name to @p trial.
    TrialOutcome (*validate)(const QStringList &arguments, const PluginTrial &trial);

    /// Does what the command line says and ends the process.
    [[noreturn]] void run(int argc, char **argv) const;
};

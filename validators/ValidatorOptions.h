#pragma once

#include <QStringList>

/// What a validator's command line asks for.
struct ValidatorOptions
{
    /// Reads the arguments after the program's name. Only words that begin with "--" are options: codes may be
    /// negative, and paths may be anything else.
    static ValidatorOptions fromArguments(const QStringList &arguments);

    bool help = false;
    bool version = false;
    double watchdog = 0;   ///< Seconds; 0 when not given.
    QStringList arguments; ///< What is not an option.
    QString error;         ///< Why the command line makes no sense; "" when it does.
};

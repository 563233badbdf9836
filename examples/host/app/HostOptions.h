#pragma once

#include <QWPlatform/appkit/Theme.h>

#include <QStringList>

#include <optional>

namespace demo
{

/// What the command line asks for.
struct HostOptions
{
    QString home; ///< Absolute; "" for the default one below the build folder.
    bool realHome = false;
    QString tour; ///< Absolute folder of the pictures; "": no tour.
    platform::ThemeChoice theme = platform::ThemeChoice::System;
    int scale = 0; ///< 1 or 2; 0: the desktop's.
    QString supportSite;
    bool quit = false; ///< As soon as the launch is over.
    bool help = false;
    QStringList files; ///< Absolute paths.

    /// @p arguments without the program's name; none, and a sentence in @p error, when they make no sense.
    static std::optional<HostOptions> parse(const QStringList &arguments, QString *error);

    static QString helpText();
};

} // namespace demo

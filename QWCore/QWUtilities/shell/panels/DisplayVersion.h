#pragma once

#include <QString>

namespace qw
{

/// A version as the user reads it: the first of the marks "pb", "rc", "b" and "a" that it holds is spelt out wherever
/// it stands ("2.1b3" is "2.1 Beta 3").
QString displayVersion(QString version);

/// The main bundle's "CFBundleShortVersionString", for the user.
QString displayVersionOfHost();

/// The host family's copyright line, up to the current year.
QString copyrightLine();

} // namespace qw

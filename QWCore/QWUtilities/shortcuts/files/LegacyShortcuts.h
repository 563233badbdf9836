#pragma once

#include <QString>

namespace qw
{

/// Current changes as they were once kept, in the user defaults.
namespace LegacyShortcuts
{

/// Moves them, if there are any, to the file at @p path. What cannot be read or written stays where it is.
void moveTo(const QString &path);

} // namespace LegacyShortcuts

} // namespace qw

#pragma once

#include <QWPlatform/qwplatform_private.h>

#include <QStringList>

namespace platform
{

/// The command, program first, by which the desktop's program @p name opens the file @p path; empty when there is no
/// such program, or it opens no files. @p name is what the user's menus show, in the user's language or without one, or
/// the identifier of the desktop entry. The user's own entries come before the machine's. Any thread.
QWPLATFORM_TEST_EXPORT QStringList commandOfProgram(const QString &name, const QString &path);

} // namespace platform

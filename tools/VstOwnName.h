#pragma once

#include <QString>

namespace platform
{
class ChildProcesses;
}

/// The name that a VST plug-in gives itself. Only its code knows it, so it is asked in a process of its own: this
/// program once more.
namespace VstOwnName
{

/// The program's hidden option for that, followed by the library.
constexpr auto option = "--name-of";

/// "" when the plug-in of @p library tells none, crashes or hangs. @p program is this program's path.
QString ask(platform::ChildProcesses &processes, const QString &program, const QString &library);

/// The asked process: prints the name and ends, without closing the plug-in.
[[noreturn]] void print(const QString &library);

} // namespace VstOwnName

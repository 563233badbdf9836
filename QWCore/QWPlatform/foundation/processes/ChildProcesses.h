#pragma once

#include <QWPlatform/qwplatform_private.h>

#include <QByteArray>
#include <QStringList>

#include <limits>

namespace platform
{

struct ChildProcessRequest
{
    QString launchPath; ///< Absolute path of the program.
    QStringList arguments;
    bool captureOutput = false; ///< Standard output is read through a pipe; otherwise it is the parent's own.
    bool captureErrors = false; ///< The same for standard error. Both share the pipe.

    /// Of more bytes than this only the beginning and the end are kept, with a line between them that says so.
    qsizetype longestOutput = std::numeric_limits<qsizetype>::max();
};

struct ChildProcessResult
{
    bool started =
        false; ///< False: the program is missing, may not be run or was ended by endAll(); nothing else is set.
    bool exited = false; ///< False: ended by a signal.
    int status = -1;     ///< Exit status, or the number of the signal.
    QByteArray output;   ///< What was captured; may hold anything.
};

/// Runs programs. The child gets an empty standard input and no terminal, the default signal mask, HOME and the library
/// root of the System, the parent's id in QW_HOST_PROCESS, and no descriptor of the parent but the three standard ones.
class QWPLATFORM_SHARED_EXPORT ChildProcesses
{
public:
    virtual ~ChildProcesses();

    /// Starts the program and waits until it exits, without a time-out and without running the event loop. A program
    /// that stops itself is killed. What it left running in its process group is ended too, and nobody who still holds
    /// its output is waited for. Any thread.
    virtual ChildProcessResult run(const ChildProcessRequest &request) = 0;

    /// Ends the programs that other threads wait for, with their groups; later ones never begin. To who waits, either
    /// counts as not started. See System::endWork().
    virtual void endAll() = 0;
};

} // namespace platform

#pragma once

#include <QWPlatform/qwplatform_export.h>

#include <QByteArray>
#include <QStringList>

namespace platform
{

struct ChildProcessRequest
{
    QString launchPath; ///< Absolute path of the program.
    QStringList arguments;
    bool captureOutput = false; ///< Standard output is read through a pipe; otherwise it is the parent's own.
};

struct ChildProcessResult
{
    bool started = false; ///< False: the program is missing or may not be run; nothing else is set.
    bool exited = false;  ///< False: ended by a signal.
    int status = -1;      ///< Exit status, or the number of the signal.
    QByteArray output;    ///< What was captured; may hold anything.
};

/// Runs programs. The child gets an empty standard input and no terminal, the default signal mask, HOME and the library
/// root of the System, and no descriptor of the parent but the three standard ones.
class QWPLATFORM_EXPORT ChildProcesses
{
public:
    virtual ~ChildProcesses();

    /// Starts the program and waits until it exits, without a time-out and without running the event loop. A program
    /// that stops itself is killed. Any thread.
    virtual ChildProcessResult run(const ChildProcessRequest &request) = 0;
};

} // namespace platform

#pragma once

#include "QWApplicationLogContext.h"

#include <QWBase/qwbase_export.h>

#include <QStringList>

#include <memory>

namespace platform
{
class Clock;
}

/// The host's log, "~/Library/Logs/Quorwell/<application name>.log": one entry a line, appended, with the time to the
/// millisecond. Warnings and errors go to standard error as well. Qt's own messages are not touched.
class QWBASE_EXPORT QWApplicationLog
{
public:
    /// How much an entry matters.
    enum Level
    {
        Debug = 0,   ///< Not written.
        Info = 1,    ///< Written.
        Notice = 2,  ///< Written: something that is meant to be and rare.
        Warning = 3, ///< Written, to standard error too: something went on without what it wanted.
        Error = 4    ///< Likewise: something ended without what it wanted.
    };

    /// Main thread; a worker takes the reference along before it starts.
    static QWApplicationLog &sharedLog();

    ~QWApplicationLog();
    QWApplicationLog(const QWApplicationLog &) = delete;
    QWApplicationLog &operator=(const QWApplicationLog &) = delete;

    /// @{
    /// Writes an entry of that level; nothing below Info. A file that cannot be written is no failure. Any thread.
    void debugMessage(const QWApplicationLogContext &context, const QString &message);
    void infoMessage(const QWApplicationLogContext &context, const QString &message);
    void warningMessage(const QWApplicationLogContext &context, const QString &message);
    void errorMessage(const QWApplicationLogContext &context, const QString &message);
    /// @}

    /// The same with the message put together from @p format ("%@", "%d"); @p context may be null. Any thread.
    void logContextFormatArguments(int level, const QWApplicationLogContext *context, const QString &format,
                                   const QStringList &arguments = {});

    /// Real path of the log file. Any thread.
    const QString &path() const;

    /// Shows the file to the user, making it when there is none yet. Main thread.
    void openLogFile();

protected:
    /// A log in the file at @p path (a real path), made with its first entry. @p clock must outlive it.
    QWApplicationLog(QString path, const platform::Clock &clock);

private:
    class Private;
    std::unique_ptr<Private> d;
};

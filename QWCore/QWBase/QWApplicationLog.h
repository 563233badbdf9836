#pragma once

#include "QWApplicationLogContext.h"

#include <QWBase/qwbase_export.h>

#include <QStringList>

#include <mutex>

namespace platform
{
class Clock;
}

/// The host's log, "~/Library/Logs/Quorwell/<application name>.log": one entry a line, appended, with the time to the
/// millisecond. Warnings and errors go to standard error as well. Qt's own messages are not touched.
class QWBASE_EXPORT QWApplicationLog
{
public:
    enum Level
    {
        Debug = 0,
        Info = 1,
        Notice = 2,
        Warning = 3,
        Error = 4
    };

    /// Main thread; a worker takes the reference along before it starts.
    static QWApplicationLog &sharedLog();

    ~QWApplicationLog();

    /// Writes an entry; nothing below Info. A file that cannot be written is no failure. Any thread.
    void debugMessage(const QWApplicationLogContext &context, const QString &message);
    void infoMessage(const QWApplicationLogContext &context, const QString &message);
    void warningMessage(const QWApplicationLogContext &context, const QString &message);
    void errorMessage(const QWApplicationLogContext &context, const QString &message);

    /// The same with the message put together from @p format ("%@", "%d"); @p context may be null. Any thread.
    void logContextFormatArguments(int level, const QWApplicationLogContext *context, const QString &format,
                                   const QStringList &arguments = {});

    /// Real path of the log file. Any thread.
    const QString &path() const { return m_path; }

    /// Shows the file to the user, making it when there is none yet. Main thread.
    void openLogFile();

protected:
    QWApplicationLog(QString path, const platform::Clock &clock);

private:
    void _log(int level, const QWApplicationLogContext *context, const QString &message);
    QByteArray _entry(int level, const QWApplicationLogContext *context, const QString &message) const;
    void _write(const QByteArray &entry);
    bool _open();
    void _close();

    const QString m_path;
    const platform::Clock &m_clock;
    std::mutex m_mutex; ///< Guards the file.
    int m_file = -1;    ///< Open for appending from the first entry on.
};

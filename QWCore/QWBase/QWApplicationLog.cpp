#include "QWApplicationLog.h"

#include "QWApplication.h"

#include <QWPlatform/System.h>
#include <QWPlatform/appkit/Workspace.h>
#include <QWPlatform/foundation/Bundle.h>
#include <QWPlatform/foundation/Clock.h>
#include <QWPlatform/foundation/Localization.h>
#include <QWPlatform/foundation/Locations.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <array>
#include <cstdio>
#include <fcntl.h>
#include <mutex>
#include <sys/stat.h>
#include <unistd.h>

using platform::System;

namespace
{
constexpr std::array levelNames = {"debug", "info", "notice", "warning", "error"};

QString hostName()
{
    if (const QWApplication *const application = QWApplication::sharedApplication())
        return application->name();
    const QString name = System::current().mainBundle().objectForInfoDictionaryKey("CFBundleName").toString();
    return name.isEmpty() ? QFileInfo(QCoreApplication::applicationFilePath()).fileName() : name;
}

QString logPath()
{
    return System::current().locations().mapped("~/Library/Logs/Quorwell/" + hostName().replace('/', ':') + ".log");
}

/// " [domain]", or "".
QString domainText(const QWApplicationLogContext *context)
{
    return context && !context->domain.isEmpty() ? " [" + context->domain + ']' : QString();
}

/// " (function, file:line, sender)" of what is known, or "".
QString placeText(const QWApplicationLogContext *context)
{
    QStringList parts;
    if (context && context->function)
        parts += QString::fromUtf8(context->function);
    if (context && context->file)
        parts += QFileInfo(QString::fromUtf8(context->file)).fileName() + ':' + QString::number(context->line);
    if (context && context->sender)
        parts += "0x" + QString::number(quintptr(context->sender), 16);
    return parts.isEmpty() ? QString() : " (" + parts.join(", ") + ')';
}
} // namespace

class Q_DECL_HIDDEN QWApplicationLog::Private
{
public:
    Private(QString path, const platform::Clock &clock)
        : m_path(std::move(path))
        , m_clock(clock)
    {
    }

    ~Private() { _close(); }

    void _log(int level, const QWApplicationLogContext *context, const QString &message);
    void _make();

    const QString m_path;

private:
    QByteArray _entry(int level, const QWApplicationLogContext *context, const QString &message) const;
    void _write(const QByteArray &entry);
    bool _open();
    void _close();

    const platform::Clock &m_clock;
    std::mutex m_mutex; ///< Guards the file.
    int m_file = -1;    ///< Open for appending from the first entry on.
};

QWApplicationLog &QWApplicationLog::sharedLog()
{
    System &system = System::current();
    return system.shared<QWApplicationLog>([&] { return new QWApplicationLog(logPath(), system.clock()); });
}

QWApplicationLog::QWApplicationLog(QString path, const platform::Clock &clock)
    : d(std::make_unique<Private>(std::move(path), clock))
{
}

QWApplicationLog::~QWApplicationLog() = default;

const QString &QWApplicationLog::path() const
{
    return d->m_path;
}

void QWApplicationLog::debugMessage(const QWApplicationLogContext &context, const QString &message)
{
    d->_log(Debug, &context, message);
}

void QWApplicationLog::infoMessage(const QWApplicationLogContext &context, const QString &message)
{
    d->_log(Info, &context, message);
}

void QWApplicationLog::warningMessage(const QWApplicationLogContext &context, const QString &message)
{
    d->_log(Warning, &context, message);
}

void QWApplicationLog::errorMessage(const QWApplicationLogContext &context, const QString &message)
{
    d->_log(Error, &context, message);
}

void QWApplicationLog::logContextFormatArguments(int level, const QWApplicationLogContext *context,
                                                 const QString &format, const QStringList &arguments)
{
    // A finished text is handed over as a format without arguments; it keeps its percent signs.
    d->_log(level, context, arguments.isEmpty() ? format : platform::formatted(format, arguments));
}

void QWApplicationLog::openLogFile()
{
    d->_make();
    platform::openFileOrTell(d->m_path);
}

void QWApplicationLog::Private::_log(int level, const QWApplicationLogContext *context, const QString &message)
{
    if (level < Info)
        return;
    const QByteArray entry = _entry(level, context, message);
    if (level >= Warning)
        std::fwrite(entry.constData(), 1, size_t(entry.size()), stderr);
    _write(entry);
}

/// One line; those of a longer message are indented, so that every other line starts with a time.
QByteArray QWApplicationLog::Private::_entry(int level, const QWApplicationLogContext *context,
                                             const QString &message) const
{
    const char *const name = levelNames[size_t(std::clamp<int>(level, Debug, Error))];
    QString text = message;
    while (text.endsWith('\n'))
        text.chop(1);
    text.replace('\n', "\n    ");
    const QString time = m_clock.now().toString("yyyy-MM-dd HH:mm:ss.zzz");
    return QString(time + ' ' + name + domainText(context) + ' ' + text + placeText(context) + '\n').toUtf8();
}

/// In one call, so that entries of several instances do not mix.
void QWApplicationLog::Private::_write(const QByteArray &entry)
{
    const std::lock_guard lock(m_mutex);
    if (_open() && ::write(m_file, entry.constData(), size_t(entry.size())) < 0)
        _close();
}

void QWApplicationLog::Private::_make()
{
    const std::lock_guard lock(m_mutex);
    _open();
}

/// Opens the file, anew when it was removed meanwhile. Under the lock.
bool QWApplicationLog::Private::_open()
{
    struct stat status;
    if (m_file >= 0 && ::fstat(m_file, &status) == 0 && status.st_nlink > 0)
        return true;
    _close();
    QDir().mkpath(QFileInfo(m_path).path());
    m_file = ::open(QFile::encodeName(m_path).constData(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0644);
    return m_file >= 0;
}

void QWApplicationLog::Private::_close()
{
    if (m_file >= 0)
        ::close(m_file);
    m_file = -1;
}

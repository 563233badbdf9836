#include "TrialLog.h"

#include <QWBase/QWApplicationLog.h>
#include <QWPlatform/foundation/processes/ChildProcesses.h>

#include <algorithm>
#include <cstring>

using platform::ChildProcessResult;

namespace qw
{

namespace
{
/// What was printed, as a text that does nothing to a terminal on which the log is read.
QString textOf(const QByteArray &output)
{
    QString text = QString::fromUtf8(output).trimmed();
    const auto isControl = [](QChar c) { return c.category() == QChar::Other_Control && c != u'\n' && c != u'\t'; };
    std::replace_if(text.begin(), text.end(), isControl, QChar::ReplacementCharacter);
    return text;
}

/// Where the validator itself has said nothing.
QString endOf(const ChildProcessResult &result)
{
    if (!result.started)
        return QStringLiteral("the validator cannot be started");
    return result.exited
               ? QStringLiteral("the validator ended with status %1").arg(result.status)
               : QStringLiteral("the validator crashed: %1").arg(QString::fromLocal8Bit(::strsignal(result.status)));
}
} // namespace

void TrialLog::note(const QString &name, const ChildProcessResult &result, bool hasPassed)
{
    const QString said = textOf(result.output);
    if (hasPassed && said.isEmpty())
        return;
    const QWApplicationLogContext context{QStringLiteral("Plug-ins")};
    QWApplicationLog &log = QWApplicationLog::sharedLog();
    if (hasPassed)
        log.logContextFormatArguments(QWApplicationLog::Info, &context, "'%@' passed its trial, and said: %@",
                                      {name, said});
    else
        log.logContextFormatArguments(QWApplicationLog::Notice, &context, "'%@' failed its trial: %@",
                                      {name, said.isEmpty() ? endOf(result) : said});
}

} // namespace qw

#include "FaultName.h"

#include <QRegularExpression>

std::optional<FaultName> FaultName::in(const QString &text)
{
    static const QRegularExpression form("^([a-z-]+)(=([0-9]{1,18}))?$");
    const QRegularExpressionMatch match = form.match(text);
    if (!match.hasMatch())
        return std::nullopt;
    const auto number = match.hasCaptured(3) ? std::optional(match.captured(3).toLongLong()) : std::nullopt;
    return FaultName{match.captured(1), number};
}

QString FaultName::help(const char *name, const char *number, const char *text)
{
    const QString form = number ? QString("%1[=%2]").arg(name, number) : QString(name);
    return QString("  %1 %2\n").arg(form, -20).arg(text);
}

#pragma once

#include <QString>

#include <optional>

/// "name" or "name=number", as options name faults.
struct FaultName
{
    QString name;
    std::optional<qint64> number;

    /// None where @p text has neither form.
    static std::optional<FaultName> in(const QString &text);

    /// A line that tells of a fault. @p number: what the number means; null where none is taken.
    static QString help(const char *name, const char *number, const char *text);
};

#pragma once

#include <QString>
#include <QVariantMap>

#include <optional>

/// What is wrong with the list of a recorder whose answer is a good one.
class ListFault
{
public:
    /// From its name, or "name=number": see help(). None for an unknown one, or a number that it does not take.
    static std::optional<ListFault> named(const QString &text);

    /// A line for each fault.
    static QString help();

    /// What stands in the list for @p entry, which is number @p index.
    QVariant entry(const QVariantMap &entry, qsizetype index) const;

    /// The bytes that are sent for the good list @p text.
    QByteArray text(const QByteArray &text) const;

    bool isEndless() const; ///< The entries go on and on.

private:
    struct Kind;

    static const Kind kinds[];

    ListFault(const Kind &kind, qint64 number);

    const Kind *m_kind;
    qint64 m_number;
};

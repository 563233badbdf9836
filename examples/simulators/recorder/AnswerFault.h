#pragma once

#include <simulators/HttpServer.h>

#include <optional>

/// What is wrong with an answer that would have been good.
class AnswerFault
{
public:
    /// From its name, or "name=number": see help(). None for an unknown one, or a number that it does not take.
    static std::optional<AnswerFault> named(const QString &text);

    /// A line for each fault.
    static QString help();

    HttpReply appliedTo(const HttpReply &reply, const HttpRequest &request) const;

private:
    struct Kind;

    static const Kind kinds[];

    AnswerFault(const Kind &kind, std::optional<qint64> number);

    const Kind *m_kind;
    std::optional<qint64> m_number;
};

#include "AnswerFault.h"

#include "FaultName.h"

#include <algorithm>

namespace
{
using Number = std::optional<qint64>;

/// One without end counts as something.
qint64 sizeOf(const HttpReply &reply)
{
    return reply.body.size() == HttpBody::unknownSize ? 2000 : reply.body.size();
}

qint64 half(const HttpReply &reply)
{
    return sizeOf(reply) / 2;
}

HttpReply cut(HttpReply reply, const HttpRequest &, Number after)
{
    reply.cutAfter = after.value_or(half(reply));
    return reply;
}

HttpReply stalled(HttpReply reply, const HttpRequest &request, Number after)
{
    reply = cut(reply, request, after);
    reply.stayAfterPieces = true;
    return reply;
}

HttpReply slow(HttpReply reply, const HttpRequest &, Number piece)
{
    reply.pieceSize = piece.value_or(16384);
    reply.pieceDelay = std::chrono::milliseconds(100);
    return reply;
}

HttpReply late(HttpReply reply, const HttpRequest &, Number milliseconds)
{
    reply.delay = std::chrono::milliseconds(milliseconds.value_or(3000));
    return reply;
}

HttpReply silent(HttpReply reply, const HttpRequest &, Number)
{
    reply.neverAnswer = true;
    return reply;
}

HttpReply longer(HttpReply reply, const HttpRequest &, Number by)
{
    reply.toldLength = std::max<qint64>(0, sizeOf(reply) - by.value_or(half(reply)));
    return reply;
}

HttpReply shorter(HttpReply reply, const HttpRequest &, Number by)
{
    reply.toldLength = sizeOf(reply) + by.value_or(1000);
    return reply;
}

HttpReply withoutLength(HttpReply reply, const HttpRequest &, Number)
{
    reply.sendLength = false;
    return reply;
}

HttpReply withoutRanges(HttpReply reply, const HttpRequest &, Number)
{
    reply.offersRanges = false;
    return reply;
}

HttpReply empty(HttpReply reply, const HttpRequest &, Number)
{
    reply.body = QByteArray();
    return reply;
}

HttpReply status(HttpReply, const HttpRequest &, Number number)
{
    return HttpReply::failure(static_cast<int>(number.value_or(404)));
}

HttpReply ring(HttpReply, const HttpRequest &request, Number)
{
    return HttpReply::redirection(request.target);
}

HttpReply noise(HttpReply reply, const HttpRequest &, Number)
{
    reply.raw = QByteArray("\x01\x02\xff\xfe no answer of the protocol\r\n\r\n");
    return reply;
}
} // namespace

struct AnswerFault::Kind
{
    const char *name;
    const char *number; ///< What it means; null where none is taken.
    const char *help;
    HttpReply (*apply)(HttpReply, const HttpRequest &, std::optional<qint64>);
};

constexpr AnswerFault::Kind AnswerFault::kinds[] = {
    {"slow", "bytes", "comes in pieces of 16384 bytes, ten a second", slow},
    {"late", "milliseconds", "begins after 3000 milliseconds", late},
    {"silent", nullptr, "never comes", silent},
    {"stalled", "bytes", "falls silent half-way", stalled},
    {"cut", "bytes", "is cut half-way, the connection closed", cut},
    {"longer", "bytes", "is longer than its length tells, by half of it", longer},
    {"shorter", "bytes", "is shorter than its length tells, by 1000 bytes", shorter},
    {"no-length", nullptr, "tells no length", withoutLength},
    {"no-ranges", nullptr, "cannot be continued", withoutRanges},
    {"empty", nullptr, "has no byte, and says so", empty},
    {"status", "status", "is status 404", status},
    {"ring", nullptr, "leads to itself", ring},
    {"noise", nullptr, "is none of the protocol", noise},
};

std::optional<AnswerFault> AnswerFault::named(const QString &text)
{
    const auto fault = FaultName::in(text);
    const auto kind = std::ranges::find_if(kinds, [&](const Kind &k) { return fault && fault->name == k.name; });
    if (kind == std::end(kinds) || (fault->number && !kind->number))
        return std::nullopt;
    return AnswerFault(*kind, fault->number);
}

QString AnswerFault::help()
{
    QString text;
    for (const Kind &kind : kinds)
        text += FaultName::help(kind.name, kind.number, kind.help);
    return text;
}

AnswerFault::AnswerFault(const Kind &kind, std::optional<qint64> number)
    : m_kind(&kind)
    , m_number(number)
{
}

HttpReply AnswerFault::appliedTo(const HttpReply &reply, const HttpRequest &request) const
{
    return m_kind->apply(reply, request, m_number);
}

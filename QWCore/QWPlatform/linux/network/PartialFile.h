#pragma once

#include "QWPlatform/network/UrlLoader.h"

#include <QByteArray>

#include <chrono>
#include <optional>

namespace platform
{

class UrlExchange;

/// What of a server's file has come, and whether and how the rest can be asked for when the connection is lost. Knows
/// bytes by their number only.
class PartialFile
{
public:
    /// How an answer goes with what is there.
    enum class Fit
    {
        Begins,    ///< It is the file, from its first byte: what came before counts for nothing.
        Continues, ///< It is the rest.
        None,      ///< It is neither.
    };

    /// How often is asked again.
    struct Patience
    {
        int fruitlessTries = 4; ///< In a row, that brought nothing beyond what was there.
        int tries = 100;        ///< In all: a server may send a byte each.
        int silences = 3;       ///< Of these, after a server that fell silent: each has cost the time of a silence.
        std::chrono::milliseconds firstPause = std::chrono::milliseconds(250); ///< Doubled after each fruitless one.
    };

    PartialFile(const QUrl &url, const Patience &patience);

    /// What to ask for now: the file, or what is missing of it unless it has changed.
    UrlRequest request() const;

    /// Takes a successful answer that has begun.
    Fit take(const UrlExchange &answer);

    /// @p length bytes of it were kept.
    void add(qint64 length) { m_received += length; }

    /// In bytes, as announced; -1 for unknown.
    qint64 length() const { return m_length; }

    /// Whether nothing is missing once an answer has come to its own end.
    bool isWhole() const { return m_length >= 0 ? m_received == m_length : m_endsWithAnswer; }

    /// Whether @p refusal of the rest says that there is none: the end of an answer without a length may get lost.
    bool isWholeAfter(const UrlExchange &refusal) const;

    bool isTooLong() const { return m_length >= 0 && m_received > m_length; }
    qint64 received() const { return m_received; }

    /// How long to wait before the connection that was lost is made anew; none when it is not.
    std::optional<std::chrono::milliseconds> pauseBeforeNextTry();

    /// The same for a server that fell silent: whoever has sent nothing new before that is not asked again.
    std::optional<std::chrono::milliseconds> pauseAfterSilence();

private:
    bool _continues(const UrlExchange &answer) const;
    void _continue(const UrlExchange &answer);
    void _begin(const UrlExchange &answer);

    QUrl m_url;
    const Patience m_patience;
    bool m_offersRanges = false;
    QByteArray m_version; ///< By which the server knows that its file is the same; "" when it has none.
    qint64 m_length = -1;
    bool m_endsWithAnswer = false; ///< The answer has no length and brings all of the file: its end is the file's.
    qint64 m_received = 0;
    qint64 m_farthest = 0; ///< The most that was there before any try.
    int m_tries = 0;
    int m_fruitlessTries = 0;
    int m_silences = 0;
};

} // namespace platform

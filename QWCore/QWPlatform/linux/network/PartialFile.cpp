#include "PartialFile.h"

#include "UrlExchange.h"

#include <QDateTime>
#include <QLocale>
#include <QRegularExpression>

#include <algorithm>

namespace platform
{

namespace
{
constexpr int mostDoublings = 4; ///< Of a pause.
constexpr int statusOk = 200;
constexpr int statusPartialContent = 206;
constexpr int statusRangeNotSatisfiable = 416;

QDateTime timeFrom(const QByteArray &header)
{
    QDateTime time = QLocale::c().toDateTime(QString::fromLatin1(header), "ddd, dd MMM yyyy hh:mm:ss 'GMT'");
    time.setTimeSpec(Qt::UTC); // else an hour that the summer skips is none
    return time;
}

/// These times have whole seconds: a file that changed within the second before it was sent may change in it again.
bool isSettled(const QByteArray &modified, const QByteArray &sent)
{
    const QDateTime then = timeFrom(modified);
    const QDateTime now = timeFrom(sent);
    return then.isValid() && (!now.isValid() || then.secsTo(now) >= 1);
}

/// A weak tag names files that are much alike, which is not enough to join their parts.
QByteArray versionOf(const UrlExchange &answer)
{
    const QByteArray tag = answer.header("ETag");
    if (tag.startsWith('"'))
        return tag;
    const QByteArray modified = answer.header("Last-Modified");
    return isSettled(modified, answer.header("Date")) ? modified : QByteArray();
}

/// Of "bytes 100-999/1000"; "*" for the last is -1.
struct ContentRange
{
    qint64 first;
    qint64 last;
    qint64 length;
};

std::optional<ContentRange> rangeOf(const UrlExchange &answer)
{
    static const QRegularExpression form("\\A\\s*bytes\\s+([0-9]{1,18})-([0-9]{1,18})/([0-9]{1,18}|\\*)\\s*\\z",
                                         QRegularExpression::CaseInsensitiveOption);
    const auto match = form.match(QString::fromLatin1(answer.header("Content-Range")));
    if (!match.hasMatch())
        return std::nullopt;
    const QString length = match.captured(3);
    return ContentRange{match.captured(1).toLongLong(), match.captured(2).toLongLong(),
                        length == u"*" ? -1 : length.toLongLong()};
}
} // namespace

PartialFile::PartialFile(const QUrl &url, const Patience &patience)
    : m_url(url)
    , m_patience(patience)
{
}

UrlRequest PartialFile::request() const
{
    UrlRequest request{.url = m_url, .method = "GET", .headers = {}, .body = {}};
    if (m_received > 0)
        request.headers = {{"Range", "bytes=" + QByteArray::number(m_received) + '-'}, {"If-Range", m_version}};
    return request;
}

PartialFile::Fit PartialFile::take(const UrlExchange &answer)
{
    if (answer.status() == statusPartialContent) {
        if (!_continues(answer))
            return Fit::None;
        _continue(answer);
        return Fit::Continues;
    }
    if (m_received > 0 && answer.status() != statusOk)
        return Fit::None;
    _begin(answer);
    return Fit::Begins;
}

/// A server may mix up its files or its counting.
bool PartialFile::_continues(const UrlExchange &answer) const
{
    const auto range = rangeOf(answer);
    const QByteArray tag = answer.header("ETag");
    const bool isSameFile = tag.isEmpty() || !m_version.startsWith('"') || tag == m_version;
    const bool isSameLength = m_length < 0 || !range || range->length < 0 || range->length == m_length;
    return m_received > 0 && range && isSameFile && isSameLength && range->first == m_received &&
           range->last >= range->first && (m_length < 0 || range->last < m_length);
}

/// A part may be shorter than what was asked for, so that its end says nothing about the file's.
void PartialFile::_continue(const UrlExchange &answer)
{
    m_endsWithAnswer = false;
    if (const auto range = rangeOf(answer); range && range->length >= 0)
        m_length = range->length;
}

bool PartialFile::isWholeAfter(const UrlExchange &refusal) const
{
    return refusal.status() == statusRangeNotSatisfiable && m_received > 0 && m_length < 0 &&
           refusal.header("Content-Range").trimmed() == "bytes */" + QByteArray::number(m_received);
}

void PartialFile::_begin(const UrlExchange &answer)
{
    m_url = answer.url();
    m_version = versionOf(answer);
    m_offersRanges = answer.header("Accept-Ranges").trimmed().toLower() == "bytes";
    m_length = answer.expectedLength();
    m_endsWithAnswer = m_length < 0;
    m_received = 0;
}

std::optional<std::chrono::milliseconds> PartialFile::pauseBeforeNextTry()
{
    if (!m_offersRanges || m_version.isEmpty())
        return std::nullopt;
    m_fruitlessTries = m_received > m_farthest ? 0 : m_fruitlessTries + 1;
    m_farthest = std::max(m_farthest, m_received);
    if (++m_tries > m_patience.tries || m_fruitlessTries > m_patience.fruitlessTries)
        return std::nullopt;
    return m_patience.firstPause * (1 << std::min(m_fruitlessTries, mostDoublings));
}

std::optional<std::chrono::milliseconds> PartialFile::pauseAfterSilence()
{
    const bool isFruitless = m_received <= m_farthest;
    return isFruitless || ++m_silences > m_patience.silences ? std::nullopt : pauseBeforeNextTry();
}

} // namespace platform

#include "RecordingKeys.h"

#include "QWVeskRecording.h"
#include "TitleCollator.h"

#include <algorithm>
#include <cstring>

namespace qw
{

namespace
{
constexpr size_t takesBetweenLooks = 1000; ///< Whether it is to stop.
constexpr char keywordEnd = '\xFF';        // no UTF-8 holds it

bool isAscii(const QString &text)
{
    return std::all_of(text.begin(), text.end(), [](QChar c) { return c.unicode() < 0x80; });
}

QString withoutMarks(const QString &text)
{
    QString kept;
    kept.reserve(text.size());
    for (const QChar c : text)
        if (c.category() != QChar::Mark_NonSpacing)
            kept.append(c);
    return kept;
}

void appendLowered(std::vector<char> &out, const QString &ascii)
{
    for (const QChar c : ascii) {
        const char16_t code = c.unicode();
        out.push_back(static_cast<char>(code >= u'A' && code <= u'Z' ? code + 0x20 : code));
    }
}

void append(std::vector<char> &out, const QByteArray &bytes)
{
    out.insert(out.end(), bytes.begin(), bytes.end());
}
} // namespace

RecordingKeys::RecordingKeys() = default;

RecordingKeys::RecordingKeys(const Recordings &recordings, const std::function<bool()> &isStopped)
{
    m_keywordEnds.reserve(recordings.size());
    m_titleKeyEnds.reserve(recordings.size());
    TitleCollator collator;
    for (const auto &recording : recordings) {
        if (m_titleKeyEnds.size() % takesBetweenLooks == 0 && isStopped && isStopped())
            return;
        _addKeywords(recording->keywords());
        if (!recording->title().isNull())
            collator.appendKey(recording->title(), m_titleKeys);
        m_titleKeyEnds.push_back(m_titleKeys.size());
    }
}

QByteArray RecordingKeys::folded(const QString &text)
{
    if (isAscii(text))
        return text.toLatin1().toLower();
    // By way of capitals, since only these write out "ß".
    return withoutMarks(text.normalized(QString::NormalizationForm_D)).toUpper().toCaseFolded().toUtf8();
}

std::vector<bool> RecordingKeys::takesWithKeywords(const QString &text) const
{
    std::vector<bool> found(m_keywordEnds.size(), false);
    const QByteArray sought = folded(text);
    if (sought.isEmpty())
        return found;
    const char *const begin = m_keywords.data();
    const char *at = begin;
    size_t take = 0;
    for (const char *const end = begin + m_keywords.size(); at != end;) {
        at = static_cast<const char *>(
            memmem(at, static_cast<size_t>(end - at), sought.constData(), static_cast<size_t>(sought.size())));
        if (!at)
            break;
        while (m_keywordEnds[take] <= static_cast<size_t>(at - begin))
            ++take;
        found[take] = true;
        at = begin + m_keywordEnds[take];
    }
    return found;
}

std::string_view RecordingKeys::titleKey(size_t take) const
{
    const size_t begin = take == 0 ? 0 : m_titleKeyEnds[take - 1];
    return {m_titleKeys.data() + begin, m_titleKeyEnds[take] - begin};
}

void RecordingKeys::_addKeywords(const QString &keywords)
{
    if (isAscii(keywords))
        appendLowered(m_keywords, keywords);
    else
        append(m_keywords, folded(keywords));
    m_keywords.push_back(keywordEnd);
    m_keywordEnds.push_back(m_keywords.size());
}

} // namespace qw

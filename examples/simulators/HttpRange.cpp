#include "HttpRange.h"

#include <QByteArrayList>

#include <algorithm>

namespace
{
constexpr qint64 missing = -1;

/// The number in @p text, missing when it is empty; none when it is something else.
std::optional<qint64> numberIn(const QByteArray &text)
{
    if (text.isEmpty())
        return missing;
    const bool isNumber = std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
    bool fits = false;
    const qint64 number = text.toLongLong(&fits);
    return isNumber && fits ? std::optional(number) : std::nullopt;
}
} // namespace

std::optional<HttpRange> HttpRange::requested(const QByteArray &header, qint64 size)
{
    constexpr QByteArrayView unit("bytes=");
    const QByteArrayList bounds = header.mid(unit.size()).trimmed().split('-');
    if (!header.startsWith(unit) || bounds.size() != 2)
        return std::nullopt;
    const auto first = numberIn(bounds[0]);
    const auto last = numberIn(bounds[1]);
    if (!first || !last || (*first == missing && *last == missing))
        return std::nullopt;
    if (*first == missing) // the last so many bytes
        return HttpRange{std::max<qint64>(0, size - *last), size};
    if (*last != missing && *last < *first)
        return std::nullopt;
    return HttpRange{*first, *last == missing ? size : std::min(size, *last + 1)};
}

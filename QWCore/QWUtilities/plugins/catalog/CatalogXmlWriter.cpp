#include "CatalogXmlWriter.h"

#include <QWBase/QWCatalogRecord.h>
#include <QWPlatform/foundation/lists/XmlPropertyListText.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace qw
{

using platform::XmlPropertyListText::isHeldBack;

namespace
{
constexpr std::string_view prolog = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                                    "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
                                    "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
                                    "<plist version=\"1.0\">\n";

/// Room that an entry needs beside its key and value: tabs, tags, line ends, or the longest number.
constexpr std::size_t entryOverhead = 96;

/// Bytes of data on one line: 76 columns less two tabs of 8 hold 60 digits.
constexpr qsizetype dataLine = 45;

std::string_view escapeOf(char c)
{
    switch (c) {
    case '&':
        return "&amp;";
    case '<':
        return "&lt;";
    case '>':
        return "&gt;";
    case '\r':
        return "&#13;"; // a bare one would be read as a line feed
    default:
        return {}; // '\0', which no reader takes, is left out
    }
}

constexpr std::array<bool, 256> makeEscapedBytes()
{
    std::array<bool, 256> escaped{};
    for (const char c : {'&', '<', '>', '\r', '\0'})
        escaped[static_cast<unsigned char>(c)] = true;
    return escaped;
}
constexpr std::array<bool, 256> escapedBytes = makeEscapedBytes();
constexpr std::size_t longestEscape = 7; ///< Bytes: the mark has three, and four digits follow.

/// Writes @p c as it stands in text; returns where the next byte goes.
char *put(char *at, char c)
{
    if (!escapedBytes[static_cast<unsigned char>(c)]) {
        *at = c;
        return at + 1;
    }
    const std::string_view escape = escapeOf(c);
    return std::copy(escape.begin(), escape.end(), at);
}

template <std::size_t Size>
void copy(char *to, const char *from)
{
    std::memcpy(to, from, Size); // a size that is known: a move or two
}

/// Writes a text of a few words; returns where the next byte goes. Not with memcpy: where the C library makes it of
/// AVX-512 instructions, calls for a few bytes slow down the code around them; records took 1.7 times as long to write.
char *copyShort(char *to, std::string_view text)
{
    const char *from = text.data();
    std::size_t left = text.size();
    for (; left >= 16; left -= 16, from += 16, to += 16)
        copy<16>(to, from);
    if (left >= 8) {
        copy<8>(to, from);
        copy<8>(to + left - 8, from + left - 8); // overlaps the first
    } else if (left >= 4) {
        copy<4>(to, from);
        copy<4>(to + left - 4, from + left - 4);
    } else {
        std::copy_n(from, left, to);
    }
    return to + left;
}

constexpr qsizetype groupSize = 8;

#ifdef __SSE2__
/// Writes eight characters as bytes when all of them are ASCII, no control characters, and stand for themselves.
bool putPlainGroup(char *at, const QChar *text)
{
    const __m128i codes = _mm_loadu_si128(reinterpret_cast<const __m128i *>(text));
    const __m128i ascii = _mm_packus_epi16(codes, codes); // beyond ASCII: 0x80 to 0xFF, or 0 for negative numbers
    const auto is = [&](char c) { return _mm_cmpeq_epi8(ascii, _mm_set1_epi8(c)); };
    const __m128i isControl = _mm_cmpeq_epi8(_mm_min_epu8(ascii, _mm_set1_epi8(0x1F)), ascii);
    const __m128i escaped = _mm_or_si128(_mm_or_si128(is('&'), is('<')), _mm_or_si128(is('>'), isControl));
    if (_mm_movemask_epi8(_mm_or_si128(ascii, escaped)) != 0)
        return false;
    _mm_storel_epi64(reinterpret_cast<__m128i *>(at), ascii);
    return true;
}
#else
bool putPlainGroup(char *, const QChar *)
{
    return false;
}
#endif

/// Writes @p text as far as it is ASCII that may stand and moves @p at behind; false when not all of it is.
bool putAscii(char *&at, QStringView text)
{
    for (const QChar character : text) {
        if (character.unicode() >= 0x80 || isHeldBack(character.unicode()))
            return false;
        at = put(at, static_cast<char>(character.unicode()));
    }
    return true;
}

char *putEscaped(char *at, const QByteArray &utf8)
{
    for (const char c : utf8)
        at = put(at, c);
    return at;
}
} // namespace

std::string_view CatalogXmlWriter::head()
{
    static const std::string text = std::string(prolog) + "<array>\n";
    return text;
}

std::string_view CatalogXmlWriter::tail()
{
    return "</array>\n</plist>\n";
}

std::string_view CatalogXmlWriter::emptyCatalog()
{
    static const std::string text = std::string(prolog) + "<array/>\n</plist>\n";
    return text;
}

CatalogXmlWriter::CatalogXmlWriter() = default;
CatalogXmlWriter::~CatalogXmlWriter() = default;

/// Room was reserved. Texts whose size is known come down to a few moves.
template <std::size_t Size>
void CatalogXmlWriter::_put(const char (&text)[Size])
{
    std::memcpy(m_at, text, Size - 1);
    m_at += Size - 1;
}

void CatalogXmlWriter::append(std::string_view text)
{
    _reserve(text.size());
    _put(text);
}

void CatalogXmlWriter::appendRecord(const QWCatalogRecord &record)
{
    append("\t<dict>\n");
    record.writeState(*this);
    append("\t</dict>\n");
}

void CatalogXmlWriter::setString(QLatin1StringView key, const QString &value)
{
    _reserve(entryOverhead + static_cast<std::size_t>(key.size()) +
             longestEscape * static_cast<std::size_t>(value.size()));
    _putKey(key);
    _put("<string>");
    _putEscaped(value);
    _put("</string>\n");
}

void CatalogXmlWriter::setBoolean(QLatin1StringView key, bool value)
{
    _reserve(entryOverhead + static_cast<std::size_t>(key.size()));
    _putKey(key);
    if (value)
        _put("<true/>\n");
    else
        _put("<false/>\n");
}

void CatalogXmlWriter::setInteger(QLatin1StringView key, qint64 value)
{
    _reserve(entryOverhead + static_cast<std::size_t>(key.size()));
    _putKey(key);
    _put("<integer>");
    m_at = std::to_chars(m_at, m_end, value).ptr;
    _put("</integer>\n");
}

void CatalogXmlWriter::setData(QLatin1StringView key, QByteArrayView value)
{
    _reserve(entryOverhead + static_cast<std::size_t>(key.size() + value.size() * 2));
    _putKey(key);
    _put("<data>\n");
    for (qsizetype at = 0; at < value.size(); at += dataLine) {
        _put("\t\t");
        _putBase64(value.sliced(at, std::min(dataLine, value.size() - at)));
        _put("\n");
    }
    _put("\t\t</data>\n");
}

void CatalogXmlWriter::_reserve(std::size_t bytes)
{
    if (bytes <= static_cast<std::size_t>(m_end - m_at))
        return;
    const std::size_t used = size();
    const std::size_t capacity = std::max<std::size_t>(4096, (used + bytes) * 2);
    auto grown = std::make_unique_for_overwrite<char[]>(capacity);
    if (used)
        std::memcpy(grown.get(), m_begin.get(), used);
    m_begin = std::move(grown);
    m_at = m_begin.get() + used;
    m_end = m_begin.get() + capacity;
}

/// Room was reserved.
void CatalogXmlWriter::_put(std::string_view text)
{
    m_at = copyShort(m_at, text);
}

void CatalogXmlWriter::_putKey(QLatin1StringView key)
{
    _put("\t\t<key>");
    _put(std::string_view(key.data(), static_cast<std::size_t>(key.size())));
    _put("</key>\n\t\t");
}

/// Room was reserved for the longest form.
void CatalogXmlWriter::_putEscaped(const QString &text)
{
    char *at = m_at; // a local: bytes written through a member might be the member's own
    const QChar *const end = text.constEnd();
    bool wasPlain = false;
    qsizetype count = 0;
    for (const QChar *group = text.constBegin(); group != end; group += count) {
        count = std::min<qsizetype>(groupSize, end - group);
        const qsizetype again = groupSize - count; // a short last group begins within the plain one before it
        wasPlain = (again == 0 || wasPlain) && putPlainGroup(at - again, group - again);
        if (wasPlain) {
            at += count;
        } else if (!putAscii(at, QStringView(group, count))) {
            at = putEscaped(m_at, platform::XmlPropertyListText::encoded(text).toUtf8());
            break;
        }
    }
    m_at = at;
}

/// Room was reserved.
void CatalogXmlWriter::_putBase64(QByteArrayView data)
{
    static constexpr char digits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    char *out = m_at;
    const auto *in = reinterpret_cast<const unsigned char *>(data.data());
    const auto *const end = in + data.size();
    for (; end - in >= 3; in += 3) {
        const unsigned bits = in[0] << 16u | in[1] << 8u | in[2];
        for (const unsigned shift : {18u, 12u, 6u, 0u})
            *out++ = digits[bits >> shift & 63];
    }
    if (in != end) {
        const bool isPair = end - in == 2;
        const unsigned bits = in[0] << 16u | (isPair ? in[1] : 0u) << 8u;
        *out++ = digits[bits >> 18];
        *out++ = digits[bits >> 12 & 63];
        *out++ = isPair ? digits[bits >> 6 & 63] : '=';
        *out++ = '=';
    }
    m_at = out;
}

} // namespace qw

#include "CatalogXmlWriter.h"

#include <QWBase/QWCatalogRecord.h>

#include <QStringEncoder>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>

namespace {
constexpr std::string_view prolog = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                                    "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
                                    "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
                                    "<plist version=\"1.0\">\n";

/// Room that an entry needs beside its key and value: tabs, tags, line ends, or the longest number.
constexpr std::size_t entryOverhead = 96;

/// Columns of one line of data at the depth of a record's values: 76 less two tabs of 8.
constexpr qsizetype dataLine = 60;

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
constexpr std::size_t longestEscape = 5;
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
             longestEscape * static_cast<std::size_t>(value.size()) + 4);
    _putKey(key, "<string>");
    _putEscaped(value);
    _put("</string>\n");
}

void CatalogXmlWriter::setBoolean(QLatin1StringView key, bool value)
{
    _reserve(entryOverhead + static_cast<std::size_t>(key.size()));
    _putKey(key, value ? "<true/>\n" : "<false/>\n");
}

void CatalogXmlWriter::setInteger(QLatin1StringView key, qint64 value)
{
    _reserve(entryOverhead + static_cast<std::size_t>(key.size()));
    _putKey(key, "<integer>");
    m_at = std::to_chars(m_at, m_end, value).ptr;
    _put("</integer>\n");
}

void CatalogXmlWriter::setData(QLatin1StringView key, const QByteArray &value)
{
    const QByteArray encoded = value.toBase64();
    _reserve(entryOverhead + static_cast<std::size_t>(key.size() + encoded.size() * 2));
    _putKey(key, "<data>\n");
    for (qsizetype at = 0; at < encoded.size(); at += dataLine) {
        const qsizetype size = std::min(dataLine, encoded.size() - at);
        _put("\t\t");
        _put({encoded.constData() + at, static_cast<std::size_t>(size)});
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
    std::memcpy(m_at, text.data(), text.size());
    m_at += text.size();
}

void CatalogXmlWriter::_putKey(QLatin1StringView key, std::string_view opening)
{
    _put("\t\t<key>");
    _put({key.data(), static_cast<std::size_t>(key.size())});
    _put("</key>\n\t\t");
    _put(opening);
}

/// Room was reserved for the longest form.
void CatalogXmlWriter::_putEscaped(const QString &text)
{
    QStringEncoder encode(QStringEncoder::Utf8, QStringEncoder::Flag::Stateless);
    char *const begin = m_at;
    char *end = encode.appendToBuffer(begin, text);
    if (encode.hasError()) { // half a character: written as QString does
        const QByteArray utf8 = text.toUtf8();
        end = std::copy(utf8.begin(), utf8.end(), begin);
    }
    m_at = std::find_if(begin, end, [](char c) { return escapedBytes[static_cast<unsigned char>(c)]; });
    if (m_at == end)
        return;
    const std::string rest(m_at, end);
    for (const char c : rest) {
        if (escapedBytes[static_cast<unsigned char>(c)])
            _put(escapeOf(c));
        else
            *m_at++ = c;
    }
}

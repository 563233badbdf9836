#include "CatalogXmlCursor.h"

#include <QWPlatform/foundation/lists/XmlPropertyListText.h>

#include <QUtf8StringView>

#include <algorithm>
#include <array>
#include <charconv>
#include <utility>

namespace qw
{

namespace
{
enum class Byte : unsigned char
{
    Plain,
    High, ///< Part of a character beyond ASCII.
    Stop, ///< Ends a run of text, or has a meaning of its own.
};

constexpr std::array<Byte, 256> makeBytes()
{
    std::array<Byte, 256> bytes{};
    for (std::size_t i = 0x80; i < bytes.size(); ++i)
        bytes[i] = Byte::High;
    for (const char c : {'<', '&', '\r', '\0'})
        bytes[static_cast<unsigned char>(c)] = Byte::Stop;
    return bytes;
}
constexpr std::array<Byte, 256> kinds = makeBytes();

Byte kindOf(char c)
{
    return kinds[static_cast<unsigned char>(c)];
}

/// What writers of property lists escape.
constexpr std::pair<std::string_view, char> escapes[] = {{"&amp;", '&'},  {"&lt;", '<'},   {"&gt;", '>'},
                                                         {"&#13;", '\r'}, {"&quot;", '"'}, {"&apos;", '\''}};

/// As writers of property lists have them, present and past.
constexpr std::string_view documentTypes[] = {
    "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" \"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">",
    "<!DOCTYPE plist PUBLIC \"-//Apple Computer//DTD PLIST 1.0//EN\" "
    "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">"};

constexpr std::string_view blanks = " \t\n";
} // namespace

bool CatalogXmlCursor::skipProlog()
{
    if (take("<?xml version=\"1.0\" encoding=\"UTF-8\"?>"))
        for (const std::string_view type : documentTypes)
            if (take(type))
                break;
    return take("<plist version=\"1.0\">");
}

std::string_view CatalogXmlCursor::plainText()
{
    const char *const begin = m_at;
    while (m_at != m_end && kindOf(*m_at) == Byte::Plain)
        ++m_at;
    return {begin, static_cast<std::size_t>(m_at - begin)};
}

bool CatalogXmlCursor::text(QString &value)
{
    const std::string_view plain = plainText();
    if (m_at == m_end)
        return false;
    if (*m_at == '<') {
        value = QString::fromLatin1(plain.data(), static_cast<qsizetype>(plain.size()));
        return true;
    }
    std::string utf8(plain);
    const bool isWhole = _escaped(utf8);
    const QByteArrayView bytes(utf8.data(), static_cast<qsizetype>(utf8.size()));
    value = platform::XmlPropertyListText::decoded(bytes);
    return isWhole && QUtf8StringView(bytes).isValidUtf8();
}

/// Appends the rest of the text, which is not all plain.
bool CatalogXmlCursor::_escaped(std::string &utf8)
{
    for (; m_at != m_end && *m_at != '<';) {
        if (kindOf(*m_at) != Byte::Stop) {
            utf8 += *m_at++;
            continue;
        }
        const auto known = std::find_if(std::begin(escapes), std::end(escapes),
                                        [this](const auto &escape) { return takeHere(escape.first); });
        if (known == std::end(escapes))
            return false;
        utf8 += known->second;
    }
    return m_at != m_end;
}

bool CatalogXmlCursor::integer(qlonglong &value)
{
    const auto [stop, error] = std::from_chars(m_at, m_end, value);
    m_at = stop;
    return error == std::errc();
}

bool CatalogXmlCursor::data(QByteArray &value)
{
    std::string_view encoded = plainText();
    const std::size_t first = encoded.find_first_not_of(blanks);
    if (first == std::string_view::npos)
        return false;
    encoded = encoded.substr(first, encoded.find_last_not_of(blanks) - first + 1);
    const auto raw = QByteArray::fromRawData(encoded.data(), static_cast<qsizetype>(encoded.size()));
    auto decoded = QByteArray::fromBase64Encoding(raw, QByteArray::AbortOnBase64DecodingErrors);
    value = std::move(decoded.decoded);
    return encoded.size() % 4 == 0 && !encoded.ends_with("===") &&
           decoded.decodingStatus == QByteArray::Base64DecodingStatus::Ok;
}

} // namespace qw

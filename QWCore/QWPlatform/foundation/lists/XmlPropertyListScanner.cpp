#include "XmlPropertyListScanner.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <cstring>
#include <utility>

namespace platform
{

namespace
{
constexpr std::array<std::pair<std::string_view, char>, 5> entities{
    {{"lt", '<'}, {"gt", '>'}, {"amp", '&'}, {"quot", '"'}, {"apos", '\''}}};

constexpr bool isBlankByte(char c)
{
    return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

/// Letters, digits, "_", ":", "-", "." and whatever is not ASCII.
constexpr std::array<bool, 256> makeNameBytes()
{
    std::array<bool, 256> names{};
    for (unsigned c = 0; c < names.size(); ++c)
        names[c] = c >= 0x80 || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= ':') ||
                   c == '_' || c == '-' || c == '.';
    return names;
}
constexpr std::array<bool, 256> nameBytes = makeNameBytes();

/// What text may hold as it stands; the others end it, need decoding or are refused.
constexpr std::array<bool, 256> makePlainBytes()
{
    std::array<bool, 256> plain{};
    plain.fill(true);
    for (const char c : {'<', '&', '\r', '\0'})
        plain[static_cast<unsigned char>(c)] = false;
    return plain;
}
constexpr std::array<bool, 256> plainBytes = makePlainBytes();

/// Writes @p code as UTF-8; null for what is no character.
char *putCharacter(char *out, uint32_t code)
{
    if (code == 0 || code > 0x10FFFF || (code >= 0xD800 && code < 0xE000))
        return nullptr;
    if (code < 0x80) {
        *out++ = static_cast<char>(code);
        return out;
    }
    const int more = code < 0x800 ? 1 : code < 0x10000 ? 2 : 3; // bytes after the first
    constexpr std::array<uint32_t, 4> leads{0, 0xC0, 0xE0, 0xF0};
    *out++ = static_cast<char>(leads[static_cast<size_t>(more)] | code >> (6 * more));
    for (int shift = 6 * (more - 1); shift >= 0; shift -= 6)
        *out++ = static_cast<char>(0x80 | (code >> shift & 0x3F));
    return out;
}

/// Writes the character of "#34" or "#x22"; null when it is none.
char *putReference(char *out, std::string_view name)
{
    const int base = name.starts_with("#x") ? 16 : 10;
    name.remove_prefix(base == 16 ? 2 : 1);
    uint32_t code = 0;
    const auto [last, error] = std::from_chars(name.data(), name.data() + name.size(), code, base);
    return error == std::errc() && last == name.data() + name.size() ? putCharacter(out, code) : nullptr;
}

/// Writes the character that entity @p name (without "&" and ";") stands for; null when there is none.
char *putEntity(char *out, std::string_view name)
{
    if (name.starts_with('#'))
        return putReference(out, name);
    const auto found = std::find_if(entities.begin(), entities.end(), [&](const auto &e) { return e.first == name; });
    if (found == entities.end())
        return nullptr;
    *out++ = found->second;
    return out;
}
} // namespace

XmlPropertyListScanner::XmlPropertyListScanner(std::string_view data)
    : m_at(data.data())
    , m_end(data.data() + data.size())
{
    if (_startsWith("\xEF\xBB\xBF"))
        m_at += 3;
}

XmlPropertyListScanner::Token XmlPropertyListScanner::next()
{
    if (m_token == Token::Error)
        return m_token;
    m_needsDecoding = false;
    m_text = {};
    m_token = m_at == m_end ? Token::Finished : *m_at == '<' ? _markup() : _text();
    return m_token;
}

XmlPropertyListScanner::Token XmlPropertyListScanner::nextTag()
{
    Token token = Token::Text;
    do {
        _skipBlanks();
        token = next();
    } while (token == Token::Text && isBlank(m_text)); // again behind a comment
    return token;
}

std::ptrdiff_t XmlPropertyListScanner::decodeTo(char *out) const
{
    char *const begin = out;
    for (size_t i = 0; i < m_text.size(); ++i) {
        const char c = m_text[i];
        if (c == '\r') {
            if (i + 1 == m_text.size() || m_text[i + 1] != '\n')
                *out++ = '\n';
        } else if (c == '&' && m_token == Token::Text) {
            const size_t end = m_text.find(';', i);
            if (end == std::string_view::npos || !(out = putEntity(out, m_text.substr(i + 1, end - i - 1))))
                return -1;
            i = end;
        } else {
            *out++ = c;
        }
    }
    return out - begin;
}

bool XmlPropertyListScanner::isBlank(std::string_view text)
{
    return std::all_of(text.begin(), text.end(), isBlankByte);
}

XmlPropertyListScanner::Token XmlPropertyListScanner::_fail()
{
    m_at = m_end;
    return Token::Error;
}

XmlPropertyListScanner::Token XmlPropertyListScanner::_text()
{
    const char *const begin = m_at;
    for (;; ++m_at) {
        while (m_at != m_end && plainBytes[static_cast<unsigned char>(*m_at)])
            ++m_at;
        if (m_at == m_end || *m_at == '<')
            break;
        if (*m_at == '\0')
            return _fail();
        m_needsDecoding = true;
    }
    m_text = {begin, static_cast<size_t>(m_at - begin)};
    return Token::Text;
}

XmlPropertyListScanner::Token XmlPropertyListScanner::_markup()
{
    while (m_at != m_end && *m_at == '<') {
        const char sign = m_at + 1 == m_end ? '\0' : m_at[1];
        if (sign == '/')
            return _endTag();
        if (sign != '!' && sign != '?')
            return _startTag();
        if (_startsWith("<![CDATA["))
            return _cdata();
        if (!_skipDeclaration())
            return _fail();
    }
    return m_at == m_end ? Token::Finished : _text();
}

XmlPropertyListScanner::Token XmlPropertyListScanner::_startTag()
{
    ++m_at; // "<"
    m_text = _name();
    if (m_text.empty())
        return _fail();
    for (;;) {
        const char *const before = m_at;
        _skipBlanks();
        if (_startsWith(">") || _startsWith("/>"))
            break;
        if (m_at == before || !_skipAttribute())
            return _fail();
    }
    const bool empty = *m_at == '/';
    m_at += empty ? 2 : 1;
    return empty ? Token::Empty : Token::Start;
}

XmlPropertyListScanner::Token XmlPropertyListScanner::_endTag()
{
    m_at += 2; // "</"
    m_text = _name();
    _skipBlanks();
    if (m_text.empty() || m_at == m_end || *m_at != '>')
        return _fail();
    ++m_at;
    return Token::End;
}

XmlPropertyListScanner::Token XmlPropertyListScanner::_cdata()
{
    const char *const begin = m_at + std::strlen("<![CDATA[");
    if (!_skipPast("]]>"))
        return _fail();
    m_text = {begin, static_cast<size_t>(m_at - begin) - 3};
    if (m_text.find('\0') != std::string_view::npos)
        return _fail();
    m_needsDecoding = m_text.find('\r') != std::string_view::npos;
    return Token::CData;
}

/// A comment, an instruction such as the XML declaration, or the document type.
bool XmlPropertyListScanner::_skipDeclaration()
{
    if (_startsWith("<!--"))
        return _skipPast("-->");
    return _startsWith("<?") ? _skipPast("?>") : _startsWith("<!DOCTYPE") && _skipDocumentType();
}

bool XmlPropertyListScanner::_skipPast(std::string_view mark)
{
    const std::string_view rest(m_at, static_cast<size_t>(m_end - m_at));
    const size_t found = rest.find(mark, 2 * mark.size() - 2); // "<!-->" and "<?>" do not end themselves
    if (found == std::string_view::npos)
        return false;
    m_at += found + mark.size();
    return true;
}

bool XmlPropertyListScanner::_skipDocumentType()
{
    const std::string_view rest(m_at, static_cast<size_t>(m_end - m_at));
    const size_t found = rest.find_first_of("[<>", 1); // "[" would begin declarations, of entities for example
    if (found == std::string_view::npos || rest[found] != '>')
        return false;
    m_at += found + 1;
    return true;
}

bool XmlPropertyListScanner::_skipAttribute()
{
    if (_name().empty())
        return false;
    _skipBlanks();
    if (!_startsWith("="))
        return false;
    ++m_at;
    _skipBlanks();
    if (!_startsWith("\"") && !_startsWith("'"))
        return false;
    const std::string_view rest(m_at + 1, static_cast<size_t>(m_end - m_at) - 1);
    const size_t close = rest.find(*m_at);
    if (close == std::string_view::npos || rest.substr(0, close).find('<') != std::string_view::npos)
        return false;
    m_at += close + 2;
    return true;
}

void XmlPropertyListScanner::_skipBlanks()
{
    while (m_at != m_end && isBlankByte(*m_at))
        ++m_at;
}

std::string_view XmlPropertyListScanner::_name()
{
    const char *const begin = m_at;
    while (m_at != m_end && nameBytes[static_cast<unsigned char>(*m_at)])
        ++m_at;
    return {begin, static_cast<size_t>(m_at - begin)};
}

bool XmlPropertyListScanner::_startsWith(std::string_view prefix) const
{
    return static_cast<size_t>(m_end - m_at) >= prefix.size() && std::memcmp(m_at, prefix.data(), prefix.size()) == 0;
}

} // namespace platform

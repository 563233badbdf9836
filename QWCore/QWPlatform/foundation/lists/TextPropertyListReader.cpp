#include "TextPropertyListReader.h"

#include "PropertyListScalars.h"

#include <QStringConverter>

#include <array>
#include <utility>

namespace platform
{

namespace
{
/// Letters behind a backslash and what they stand for; any other character stands for itself.
constexpr std::array<std::pair<char16_t, char16_t>, 7> escapes{
    {{u'a', u'\a'}, {u'b', u'\b'}, {u'f', u'\f'}, {u'n', u'\n'}, {u'r', u'\r'}, {u't', u'\t'}, {u'v', u'\v'}}};

constexpr qsizetype entriesOfAnyText = 65536;
constexpr qsizetype charactersPerFurtherEntry = 4; ///< "(a,a,a)" needs two; no program writes that by the thousand.

constexpr char16_t textEnd = u'\0'; ///< Also refused where it stands in the text.

bool isOneOf(QChar c, QStringView characters)
{
    return c != textEnd && characters.contains(c);
}

bool isBare(QChar c)
{
    return (c.unicode() < 0x80 && c.isLetterOrNumber()) || isOneOf(c, u"_$/:.-");
}

int hexadecimal(QChar c)
{
    const int place = static_cast<int>(QStringView(u"0123456789abcdef").indexOf(c.toLower()));
    return c == textEnd ? -1 : place;
}
} // namespace

TextPropertyListReader::TextPropertyListReader(QString text)
    : m_text(std::move(text))
    , m_entriesLeft(entriesOfAnyText + m_text.size() / charactersPerFurtherEntry)
{
}

std::optional<QString> TextPropertyListReader::decoded(const QByteArray &data)
{
    const auto encoding = QStringConverter::encodingForData(data).value_or(QStringConverter::Utf8);
    const bool wide = encoding == QStringConverter::Utf16LE || encoding == QStringConverter::Utf16BE;
    if ((!wide && encoding != QStringConverter::Utf8) || (wide && data.size() % 2 != 0))
        return std::nullopt;
    QStringDecoder decoder(encoding);
    QString text = decoder(data);
    return decoder.hasError() ? std::nullopt : std::optional(std::move(text));
}

std::optional<QVariant> TextPropertyListReader::read()
{
    if (!_skipBlanks())
        return std::nullopt;
    std::optional<QVariant> list = _root();
    return list && _skipBlanks() && m_at == m_text.size() ? std::move(list) : std::nullopt;
}

std::optional<QVariant> TextPropertyListReader::_root()
{
    QVariant value;
    const bool read = isOneOf(_peek(), u"{(<") ? _value(0, value) : _entries(0, textEnd, value);
    return read ? std::optional(std::move(value)) : std::nullopt;
}

bool TextPropertyListReader::_value(int depth, QVariant &value)
{
    if (depth >= maximumPropertyListDepth && isOneOf(_peek(), u"{("))
        return false;
    if (_take(u'{'))
        return _entries(depth + 1, u'}', value) && _take(u'}');
    if (_take(u'('))
        return _array(depth + 1, value);
    if (_take(u'<'))
        return _data(value);
    QString text;
    if (!_string(text))
        return false;
    value = text;
    return true;
}

/// "key = value;" and "key;" up to @p last, which is not taken.
bool TextPropertyListReader::_entries(int depth, QChar last, QVariant &value)
{
    QVariantMap map;
    while (_skipBlanks()) {
        if (_peek() == last && (last != textEnd || m_at == m_text.size())) {
            value = std::move(map);
            return true;
        }
        if (!_entry(depth, map))
            return false;
    }
    return false;
}

bool TextPropertyListReader::_entry(int depth, QVariantMap &map)
{
    QString key;
    if (--m_entriesLeft < 0 || !_string(key) || !_skipBlanks())
        return false;
    QVariant value = key;
    if (_take(u'=') && !(_skipBlanks() && _value(depth, value)))
        return false;
    if (!_skipBlanks() || !_take(u';'))
        return false;
    map.insert(key, value);
    return true;
}

bool TextPropertyListReader::_array(int depth, QVariant &value)
{
    QVariantList list;
    while (_skipBlanks() && !_take(u')')) {
        if (--m_entriesLeft < 0 || !_value(depth, list.emplace_back()) || !_skipBlanks())
            return false;
        if (!_take(u',') && _peek() != u')')
            return false;
    }
    value = std::move(list);
    return m_text.at(m_at - 1) == u')';
}

bool TextPropertyListReader::_data(QVariant &value)
{
    QByteArray digits;
    for (; hexadecimal(_peek()) >= 0 || _peek().isSpace(); ++m_at)
        if (!_peek().isSpace())
            digits.append(static_cast<char>(_peek().unicode()));
    value = QByteArray::fromHex(digits);
    return digits.size() % 2 == 0 && _take(u'>');
}

bool TextPropertyListReader::_string(QString &text)
{
    const QChar first = _peek();
    return isOneOf(first, u"\"'") ? _quoted(first, text) : _bare(text);
}

bool TextPropertyListReader::_quoted(QChar quote, QString &text)
{
    ++m_at;
    while (m_at < m_text.size()) {
        const QChar c = m_text.at(m_at++);
        if (c == quote)
            return PropertyListScalars::isWritable(text); // escapes can spell anything
        if (c == textEnd || (c == u'\\' && !_escape(text)))
            return false;
        if (c != u'\\')
            text.append(c);
    }
    return false;
}

bool TextPropertyListReader::_escape(QString &text)
{
    const QChar c = _peek();
    if (c == textEnd)
        return false;
    if (isOneOf(c, u"01234567")) {
        _octalEscape(text);
        return true;
    }
    ++m_at;
    if (c == u'U' || c == u'u')
        return _unicodeEscape(text);
    for (const auto &[letter, meaning] : escapes) {
        if (c == letter) {
            text.append(QChar(meaning));
            return true;
        }
    }
    text.append(c);
    return true;
}

/// Four hexadecimal digits: one UTF-16 unit.
bool TextPropertyListReader::_unicodeEscape(QString &text)
{
    int unit = 0;
    for (int i = 0; i < 4; ++i, ++m_at) {
        const int digit = hexadecimal(_peek());
        if (digit < 0)
            return false;
        unit = unit * 16 + digit;
    }
    text.append(QChar(unit));
    return true;
}

/// One to three octal digits.
void TextPropertyListReader::_octalEscape(QString &text)
{
    int code = 0;
    for (int i = 0; i < 3 && isOneOf(_peek(), u"01234567"); ++i, ++m_at)
        code = code * 8 + (_peek().unicode() - u'0');
    text.append(QChar(code));
}

bool TextPropertyListReader::_bare(QString &text)
{
    const qsizetype begin = m_at;
    while (isBare(_peek()))
        ++m_at;
    text = m_text.mid(begin, m_at - begin);
    return m_at > begin;
}

QChar TextPropertyListReader::_peek() const
{
    return m_at < m_text.size() ? m_text.at(m_at) : QChar(textEnd);
}

bool TextPropertyListReader::_take(QChar character)
{
    const bool there = _peek() == character && m_at < m_text.size();
    m_at += there ? 1 : 0;
    return there;
}

/// Blanks and comments; false for a comment without an end.
bool TextPropertyListReader::_skipBlanks()
{
    for (;;) {
        while (_peek().isSpace())
            ++m_at;
        const QStringView rest = QStringView(m_text).mid(m_at);
        if (!rest.startsWith(u"//") && !rest.startsWith(u"/*"))
            return true;
        if (!_skipComment())
            return false;
    }
}

bool TextPropertyListReader::_skipComment()
{
    const bool line = m_text.at(m_at + 1) == u'/';
    if (line) {
        while (m_at < m_text.size() && !isOneOf(_peek(), u"\n\r\u2028\u2029"))
            ++m_at;
        return true;
    }
    const qsizetype close = m_text.indexOf(u"*/", m_at + 2);
    m_at = close + 2;
    return close >= 0;
}

} // namespace platform

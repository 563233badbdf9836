#include "XmlPropertyListReader.h"

#include "PropertyListScalars.h"
#include "XmlPropertyListText.h"

#include <QUtf8StringView>

#include <algorithm>

namespace platform
{

namespace
{
std::string_view viewOf(const QByteArray &data)
{
    return {data.constData(), static_cast<size_t>(data.size())};
}

QString textOf(std::string_view utf8)
{
    return XmlPropertyListText::decoded({utf8.data(), static_cast<qsizetype>(utf8.size())});
}

template <class T>
bool assign(QVariant &value, std::optional<T> &&read)
{
    if (read)
        value = std::move(*read);
    return read.has_value();
}
} // namespace

XmlPropertyListReader::XmlPropertyListReader(const QByteArray &data)
    : m_data(data)
    , m_scanner(viewOf(data))
{
}

std::optional<QVariant> XmlPropertyListReader::read()
{
    QVariant value;
    const bool whole = readBeginning() && readValue(m_scanner.nextTag(), 0, value) && readEnd();
    return whole ? std::optional(std::move(value)) : std::nullopt;
}

bool XmlPropertyListReader::readBeginning()
{
    return QUtf8StringView(m_data).isValidUtf8() && m_scanner.nextTag() == Token::Start && m_scanner.text() == "plist";
}

bool XmlPropertyListReader::readEnd()
{
    return m_scanner.nextTag() == Token::End && m_scanner.text() == "plist" && m_scanner.nextTag() == Token::Finished;
}

bool XmlPropertyListReader::readValue(Token token, int depth, QVariant &value)
{
    const std::string_view name = m_scanner.text();
    if (token == Token::Empty) {
        if (name == "dict")
            value = QVariantMap();
        else if (name == "array")
            value = QVariantList();
        else
            return _scalar(name, {}, value);
        return true;
    }
    if (token != Token::Start)
        return false;
    if (name == "dict")
        return depth < maximumPropertyListDepth && _dictionary(depth + 1, value);
    if (name == "array")
        return depth < maximumPropertyListDepth && _array(depth + 1, value);
    std::string_view content;
    return readContent(name, content) && _scalar(name, content, value);
}

bool XmlPropertyListReader::_array(int depth, QVariant &value)
{
    QVariantList list;
    Token token = m_scanner.nextTag();
    for (; token == Token::Start || token == Token::Empty; token = m_scanner.nextTag())
        if (!readValue(token, depth, list.emplace_back()))
            return false;
    if (token != Token::End || m_scanner.text() != "array")
        return false;
    value = std::move(list);
    return true;
}

bool XmlPropertyListReader::_dictionary(int depth, QVariant &value)
{
    QVariantMap map;
    QString key;
    Token token = m_scanner.nextTag();
    for (; (token == Token::Start || token == Token::Empty) && m_scanner.text() == "key"; token = m_scanner.nextTag()) {
        QVariant item;
        if (!_key(token, key) || !readValue(m_scanner.nextTag(), depth, item))
            return false;
        map.insert(map.cend(), key, std::move(item)); // keys come ascending: the hint makes it linear
    }
    if (token != Token::End || m_scanner.text() != "dict")
        return false;
    value = std::move(map);
    return true;
}

bool XmlPropertyListReader::_scalar(std::string_view name, std::string_view content, QVariant &value) const
{
    if (name == "string") {
        value = textOf(content);
        return true;
    }
    if (name == "true" || name == "false") {
        value = name == "true";
        return XmlPropertyListScanner::isBlank(content);
    }
    if (name == "integer")
        return assign(value, PropertyListScalars::integer(content));
    if (name == "real")
        return assign(value, PropertyListScalars::real(content));
    if (name == "date")
        return assign(value, PropertyListScalars::date(content));
    return name == "data" && assign(value, PropertyListScalars::data(content));
}

bool XmlPropertyListReader::_key(Token token, QString &key)
{
    std::string_view raw;
    if (token == Token::Start && !readContent("key", raw))
        return false;
    if (!isInData(raw) || raw.empty()) { // not in the data, so it cannot be kept
        key = textOf(raw);
        return true;
    }
    const size_t place =
        raw.size() * 7 + static_cast<unsigned char>(raw.front()) * 3 + static_cast<unsigned char>(raw.back());
    CachedKey &cached = m_keys[place % m_keys.size()];
    if (cached.raw != raw)
        cached = {raw, textOf(raw)};
    key = cached.key;
    return true;
}

bool XmlPropertyListReader::readContent(std::string_view name, std::string_view &content)
{
    Token token = m_scanner.next();
    if (token == Token::Text && !m_scanner.needsDecoding()) {
        content = m_scanner.text();
        token = m_scanner.next();
        if (token == Token::End)
            return m_scanner.text() == name;
    }
    m_buffer.assign(content);
    for (; token == Token::Text || token == Token::CData; token = m_scanner.next())
        if (!_appendText())
            return false;
    content = m_buffer;
    return token == Token::End && m_scanner.text() == name;
}

bool XmlPropertyListReader::_appendText()
{
    const size_t before = m_buffer.size();
    m_buffer.resize(before + m_scanner.text().size());
    const auto added = m_scanner.decodeTo(m_buffer.data() + before);
    m_buffer.resize(before + static_cast<size_t>(std::max<std::ptrdiff_t>(added, 0)));
    return added >= 0;
}

} // namespace platform

#include "XmlPropertyListWriter.h"

#include "PropertyListScalars.h"
#include "XmlPropertyListText.h"

#include <algorithm>

namespace platform
{

namespace
{
constexpr char prolog[] = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                          "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
                          "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
                          "<plist version=\"1.0\">\n";
constexpr char epilog[] = "</plist>\n";

constexpr int dataColumns = 76; ///< Widest line of data, indentation included.
constexpr int tabColumns = 8;
constexpr int dataTabs = 8; ///< Deepest indentation of data; deeper would leave no room.

const char *escapeOf(char c)
{
    switch (c) {
    case '&':
        return "&amp;";
    case '<':
        return "&lt;";
    case '>':
        return "&gt;";
    case '\r':
        return "&#13;"; // a bare one would read back as a line feed
    default:
        return nullptr;
    }
}
} // namespace

QByteArray XmlPropertyListWriter::text(const QVariant &list)
{
    XmlPropertyListWriter writer;
    writer.m_text = prolog;
    if (!writer._value(list, 0))
        return {};
    return writer.m_text.append(epilog);
}

bool XmlPropertyListWriter::_value(const QVariant &value, int depth)
{
    _indent(depth);
    switch (value.typeId()) {
    case QMetaType::QVariantMap:
    case QMetaType::QVariantHash:
        return depth < maximumPropertyListDepth && _dictionary(value.toMap(), depth);
    case QMetaType::QVariantList:
    case QMetaType::QStringList:
        return depth < maximumPropertyListDepth && _array(value.toList(), depth);
    case QMetaType::QString:
        return _element("string", value.toString());
    case QMetaType::Bool:
        m_text.append(value.toBool() ? "<true/>\n" : "<false/>\n");
        return true;
    case QMetaType::QDateTime:
        return _date(value.toDateTime());
    case QMetaType::QByteArray:
        _data(value.toByteArray(), depth);
        return true;
    default:
        return _number(value);
    }
}

bool XmlPropertyListWriter::_number(const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::Double:
    case QMetaType::Float:
        _element("real", PropertyListScalars::realText(value.toDouble()));
        return true;
    case QMetaType::Char:
    case QMetaType::SChar:
    case QMetaType::Short:
    case QMetaType::Int:
    case QMetaType::Long:
    case QMetaType::LongLong:
        _element("integer", std::to_string(value.toLongLong()));
        return true;
    case QMetaType::UChar:
    case QMetaType::UShort:
    case QMetaType::UInt:
    case QMetaType::ULong:
    case QMetaType::ULongLong:
        _element("integer", std::to_string(value.toULongLong()));
        return true;
    default:
        return false;
    }
}

bool XmlPropertyListWriter::_array(const QVariantList &list, int depth)
{
    if (list.isEmpty()) {
        m_text.append("<array/>\n");
        return true;
    }
    m_text.append("<array>\n");
    for (const QVariant &item : list)
        if (!_value(item, depth + 1))
            return false;
    _indent(depth);
    m_text.append("</array>\n");
    return true;
}

bool XmlPropertyListWriter::_dictionary(const QVariantMap &map, int depth)
{
    if (map.isEmpty()) {
        m_text.append("<dict/>\n");
        return true;
    }
    m_text.append("<dict>\n");
    for (auto item = map.begin(); item != map.end(); ++item) {
        _indent(depth + 1);
        if (!_element("key", item.key()) || !_value(item.value(), depth + 1))
            return false;
    }
    _indent(depth);
    m_text.append("</dict>\n");
    return true;
}

bool XmlPropertyListWriter::_date(const QDateTime &date)
{
    const QByteArray text = PropertyListScalars::dateText(date);
    _element("date", {text.constData(), static_cast<size_t>(text.size())});
    return !text.isEmpty();
}

void XmlPropertyListWriter::_data(const QByteArray &data, int depth)
{
    const int tabs = std::min(depth, dataTabs);
    const qsizetype width = (dataColumns - tabs * tabColumns) / 4 * 4;
    const QByteArray encoded = data.toBase64();
    m_text.append("<data>\n");
    for (qsizetype at = 0; at < encoded.size(); at += width) {
        _indent(tabs);
        m_text.append(encoded.constData() + at, std::min(width, encoded.size() - at)).append('\n');
    }
    _indent(depth);
    m_text.append("</data>\n");
}

bool XmlPropertyListWriter::_element(const char *name, const QString &text)
{
    m_text.append('<').append(name).append('>');
    if (!_appendEscaped(text))
        return false;
    m_text.append("</").append(name).append(">\n");
    return true;
}

void XmlPropertyListWriter::_element(const char *name, std::string_view plainText)
{
    m_text.append('<').append(name).append('>');
    m_text.append(plainText.data(), static_cast<qsizetype>(plainText.size()));
    m_text.append("</").append(name).append(">\n");
}

/// False for text with a null character, which no reader takes.
bool XmlPropertyListWriter::_appendEscaped(const QString &text)
{
    const QByteArray utf8 = XmlPropertyListText::encoded(text).toUtf8();
    qsizetype plainFrom = 0;
    for (qsizetype i = 0; i < utf8.size(); ++i) {
        const char *escape = escapeOf(utf8[i]);
        if (!escape)
            continue;
        m_text.append(utf8.constData() + plainFrom, i - plainFrom).append(escape);
        plainFrom = i + 1;
    }
    m_text.append(utf8.constData() + plainFrom, utf8.size() - plainFrom);
    return !utf8.contains('\0');
}

void XmlPropertyListWriter::_indent(int depth)
{
    m_text.append(depth, '\t');
}

} // namespace platform

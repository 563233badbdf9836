#include "CatalogReader.h"

#include <QWBase/QWCatalogRecord.h>
#include <QWPlatform/foundation/PropertyList.h>
#include <QWPlatform/foundation/XmlPropertyListScanner.h>

#include <QUtf8StringView>

#include <charconv>

namespace {
using platform::XmlPropertyListScanner;
using Token = XmlPropertyListScanner::Token;

/// Reads an array of flat dictionaries of text, truth, whole numbers and data, which is what catalogs are. It stops at
/// anything else, right or wrong; such a file is left to the reader of whole lists.
class FlatReader
{
public:
    FlatReader(std::string_view data, const std::function<QWCatalogRecord &()> &makeRecord)
        : m_scanner(data)
        , m_makeRecord(makeRecord)
    {
    }

    bool read()
    {
        return _tag(Token::Start, "plist") && _array() && _tag(Token::End, "plist") &&
               m_scanner.nextTag() == Token::Finished;
    }

private:
    bool _tag(Token token, std::string_view name) { return m_scanner.nextTag() == token && m_scanner.text() == name; }

    bool _array()
    {
        Token token = m_scanner.nextTag();
        if (m_scanner.text() != "array")
            return false;
        if (token != Token::Start)
            return token == Token::Empty;
        for (token = m_scanner.nextTag(); m_scanner.text() == "dict"; token = m_scanner.nextTag())
            if (!_record(token))
                return false;
        return token == Token::End && m_scanner.text() == "array";
    }

    bool _record(Token token)
    {
        if (token != Token::Start)
            return false;
        QWCatalogRecord &record = m_makeRecord();
        for (token = m_scanner.nextTag(); token == Token::Start && m_scanner.text() == "key";
             token = m_scanner.nextTag()) {
            const bool isPlain = m_scanner.next() == Token::Text && !m_scanner.needsDecoding();
            const std::string_view key = m_scanner.text();
            if (!isPlain || !(m_scanner.next() == Token::End && m_scanner.text() == "key") || !_value(record, key))
                return false;
        }
        return token == Token::End && m_scanner.text() == "dict";
    }

    bool _value(QWCatalogRecord &record, std::string_view key)
    {
        const Token token = m_scanner.nextTag();
        const std::string_view name = m_scanner.text();
        QVariant value;
        if (token == Token::Empty && (name == "true" || name == "false"))
            value = name == "true";
        else if (token == Token::Empty && name == "string")
            value = QString();
        else if (token != Token::Start || !_content(name, value))
            return false;
        record.setValueForKey(key, value);
        return true;
    }

    bool _content(std::string_view name, QVariant &value)
    {
        std::string_view content;
        Token token = m_scanner.next();
        if (token == Token::Text) {
            if (!_decoded(content))
                return false;
            token = m_scanner.next();
        }
        if (token != Token::End || m_scanner.text() != name)
            return false;
        return name == "string"    ? _text(content, value)
               : name == "integer" ? _integer(content, value)
                                   : name == "data" && _data(content, value);
    }

    bool _decoded(std::string_view &content)
    {
        content = m_scanner.text();
        if (!m_scanner.needsDecoding())
            return true;
        m_buffer.resize(content.size());
        const auto size = m_scanner.decodeTo(m_buffer.data());
        content = std::string_view(m_buffer).substr(0, static_cast<std::size_t>(std::max<std::ptrdiff_t>(size, 0)));
        return size >= 0;
    }

    static bool _text(std::string_view content, QVariant &value)
    {
        value = QString::fromUtf8(content.data(), static_cast<qsizetype>(content.size()));
        return true;
    }

    static bool _integer(std::string_view content, QVariant &value)
    {
        qlonglong number = 0;
        const char *const end = content.data() + content.size();
        const auto [stop, error] = std::from_chars(content.data(), end, number);
        value = number;
        return error == std::errc() && stop == end;
    }

    static bool _data(std::string_view content, QVariant &value)
    {
        constexpr std::string_view blanks = " \t\r\n";
        const std::size_t begin = content.find_first_not_of(blanks);
        if (begin == std::string_view::npos)
            return false;
        content = content.substr(begin, content.find_last_not_of(blanks) - begin + 1);
        const auto encoded = QByteArray::fromRawData(content.data(), static_cast<qsizetype>(content.size()));
        auto decoded = QByteArray::fromBase64Encoding(encoded, QByteArray::AbortOnBase64DecodingErrors);
        value = std::move(decoded.decoded);
        return content.size() % 4 == 0 && !content.ends_with("===") &&
               decoded.decodingStatus == QByteArray::Base64DecodingStatus::Ok;
    }

    XmlPropertyListScanner m_scanner;
    const std::function<QWCatalogRecord &()> &m_makeRecord;
    std::string m_buffer;
};

void readWithTree(const QByteArray &data, const std::function<QWCatalogRecord &()> &makeRecord)
{
    const auto list = platform::PropertyList::fromData(data);
    if (!list || list->typeId() != QMetaType::QVariantList)
        return;
    for (const QVariant &element : list->toList())
        if (element.typeId() == QMetaType::QVariantMap)
            makeRecord().setState(element.toMap());
}
} // namespace

void CatalogReader::read(const QByteArray &data, const Records &records)
{
    const std::string_view view(data.constData(), static_cast<std::size_t>(data.size()));
    if (QUtf8StringView(data).isValidUtf8() && FlatReader(view, records.make).read())
        return;
    records.clear();
    readWithTree(data, records.make);
}

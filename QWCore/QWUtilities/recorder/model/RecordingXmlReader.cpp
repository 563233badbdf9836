#include "RecordingXmlReader.h"

#include "RecordingListReader.h"

#include <QWPlatform/foundation/lists/PropertyListScalars.h>
#include <QWPlatform/foundation/lists/XmlPropertyListText.h>

namespace qw
{

namespace
{
// How deep the values of each stand, for the limit that the list has as a whole.
constexpr int entryDepth = 1;
constexpr int fieldDepth = 2;
constexpr int codeDepth = 3;

constexpr size_t stepsBetweenLooks = 1000; ///< Whether it is to stop.

QString recordingTextOf(std::string_view utf8)
{
    if (utf8.empty())
        return QStringLiteral("");
    return platform::XmlPropertyListText::decoded({utf8.data(), static_cast<qsizetype>(utf8.size())});
}
} // namespace

RecordingXmlReader::RecordingXmlReader(const QByteArray &data, const std::function<bool()> &isStopped)
    : m_reader(data)
    , m_scanner(m_reader.scanner())
    , m_isStopped(isStopped)
{
}

std::optional<std::vector<RecordingState>> RecordingXmlReader::read()
{
    const bool whole = m_reader.readBeginning() && _entries(m_scanner.nextTag()) && m_reader.readEnd();
    return whole ? std::optional(std::move(m_states)) : std::nullopt;
}

bool RecordingXmlReader::_entries(Token token)
{
    if (m_scanner.text() != "array")
        return false;
    if (token == Token::Empty)
        return true;
    if (token != Token::Start)
        return false;
    for (token = m_scanner.nextTag(); token == Token::Start || token == Token::Empty; token = m_scanner.nextTag())
        if (++m_entries > RecordingListReader::mostTakes || !_goesOn() || !_entry(token))
            return false;
    return token == Token::End && m_scanner.text() == "array";
}

bool RecordingXmlReader::_entry(Token token)
{
    if (m_scanner.text() == "dict")
        return token == Token::Empty ? (m_states.emplace_back(), true) : _dictionary(m_states.emplace_back());
    QVariant passedOver;
    return _value(token, entryDepth, passedOver);
}

bool RecordingXmlReader::_dictionary(RecordingState &state)
{
    Token token = m_scanner.nextTag();
    for (; (token == Token::Start || token == Token::Empty) && m_scanner.text() == "key"; token = m_scanner.nextTag()) {
        std::string_view key;
        if (token == Token::Start && !m_reader.readContent("key", key))
            return false;
        const RecordingField field = recordingFieldOf(key);
        if (!_field(m_scanner.nextTag(), field, state))
            return false;
    }
    return token == Token::End && m_scanner.text() == "dict";
}

bool RecordingXmlReader::_field(Token token, RecordingField field, RecordingState &state)
{
    const std::string_view type = m_scanner.text();
    if (QString *const text = type == "string" ? recordingText(state, field) : nullptr)
        return _text(token, *text);
    if (field == RecordingField::Formats && token == Token::Start && type == "array")
        return _codes(state.formats.emplace());
    QVariant value;
    if (!_value(token, fieldDepth, value))
        return false;
    setRecordingField(state, field, value);
    return true;
}

/// As the reader's, but what stands in arrays and dictionaries is only looked through: no field is one, and a tree of
/// theirs could be of any size.
bool RecordingXmlReader::_value(Token token, int depth, QVariant &value)
{
    const std::string_view type = m_scanner.text();
    const bool isArray = type == "array";
    if (token != Token::Start || (!isArray && type != "dict"))
        return m_reader.readValue(token, depth, value);
    if (depth >= platform::maximumPropertyListDepth)
        return false;
    return isArray ? _passOverArray(depth + 1) : _passOverDictionary(depth + 1);
}

bool RecordingXmlReader::_passOverArray(int depth)
{
    Token token = m_scanner.nextTag();
    for (; token == Token::Start || token == Token::Empty; token = m_scanner.nextTag()) {
        QVariant item;
        if (!_goesOn() || !_value(token, depth, item))
            return false;
    }
    return token == Token::End && m_scanner.text() == "array";
}

bool RecordingXmlReader::_passOverDictionary(int depth)
{
    Token token = m_scanner.nextTag();
    for (; (token == Token::Start || token == Token::Empty) && m_scanner.text() == "key"; token = m_scanner.nextTag()) {
        std::string_view key;
        QVariant item;
        if (token == Token::Start && !m_reader.readContent("key", key))
            return false;
        if (!_goesOn() || !_value(m_scanner.nextTag(), depth, item))
            return false;
    }
    return token == Token::End && m_scanner.text() == "dict";
}

bool RecordingXmlReader::_goesOn()
{
    return ++m_steps % stepsBetweenLooks != 0 || !m_isStopped || !m_isStopped();
}

bool RecordingXmlReader::_text(Token token, QString &text)
{
    std::string_view content;
    if (token != Token::Empty && (token != Token::Start || !m_reader.readContent("string", content)))
        return false;
    text = recordingTextOf(content);
    return true;
}

bool RecordingXmlReader::_codes(QStringList &codes)
{
    Token token = m_scanner.nextTag();
    for (; token == Token::Start || token == Token::Empty; token = m_scanner.nextTag()) {
        if (!_goesOn())
            return false;
        std::string_view raw;
        QVariant value;
        if (token == Token::Start && m_scanner.text() == "string") {
            if (!m_reader.readContent("string", raw))
                return false;
            codes.append(_code(raw));
        } else if (!_value(token, codeDepth, value)) {
            return false;
        } else if (value.typeId() == QMetaType::QString) {
            codes.append(value.toString());
        }
    }
    return token == Token::End && m_scanner.text() == "array";
}

QString RecordingXmlReader::_code(std::string_view raw)
{
    if (raw.empty() || !m_reader.isInData(raw))
        return recordingTextOf(raw);
    CachedCode &cached = m_codes[(raw.size() * 5 + static_cast<unsigned char>(raw.front())) % m_codes.size()];
    if (cached.raw != raw)
        cached = {raw, recordingTextOf(raw)};
    return cached.code;
}

} // namespace qw

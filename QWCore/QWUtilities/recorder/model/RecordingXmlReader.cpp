#include "RecordingXmlReader.h"

#include "RecordingListReader.h"

#include <QWPlatform/foundation/lists/XmlPropertyListText.h>

namespace qw
{

namespace
{
// How deep the values of each stand, for the limit that the list has as a whole.
constexpr int entryDepth = 1;
constexpr int fieldDepth = 2;
constexpr int codeDepth = 3;

QString recordingTextOf(std::string_view utf8)
{
    if (utf8.empty())
        return QStringLiteral("");
    return platform::XmlPropertyListText::decoded({utf8.data(), static_cast<qsizetype>(utf8.size())});
}
} // namespace

RecordingXmlReader::RecordingXmlReader(const QByteArray &data)
    : m_reader(data)
    , m_scanner(m_reader.scanner())
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
        if (!_entry(token) || m_states.size() > RecordingListReader::mostTakes)
            return false;
    return token == Token::End && m_scanner.text() == "array";
}

bool RecordingXmlReader::_entry(Token token)
{
    if (m_scanner.text() == "dict")
        return token == Token::Empty ? (m_states.emplace_back(), true) : _dictionary(m_states.emplace_back());
    QVariant passedOver;
    return m_reader.readValue(token, entryDepth, passedOver);
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
    if (!m_reader.readValue(token, fieldDepth, value))
        return false;
    setRecordingField(state, field, value);
    return true;
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
        std::string_view raw;
        QVariant value;
        if (token == Token::Start && m_scanner.text() == "string") {
            if (!m_reader.readContent("string", raw))
                return false;
            codes.append(_code(raw));
        } else if (!m_reader.readValue(token, codeDepth, value)) {
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

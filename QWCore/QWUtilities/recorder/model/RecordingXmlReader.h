#pragma once

#include "RecordingFields.h"

#include <QWPlatform/foundation/lists/XmlPropertyListReader.h>

#include <array>
#include <functional>
#include <optional>
#include <string_view>
#include <vector>

namespace qw
{

/// Reads a recorder's list in its XML form in one pass, without a tree between: ten thousand takes are 8 MB. What is no
/// property list to XmlPropertyListReader is none here. Any thread.
class RecordingXmlReader
{
public:
    /// @p data and @p isStopped, which may be empty, must outlive the reader.
    RecordingXmlReader(const QByteArray &data, const std::function<bool()> &isStopped);

    /// As RecordingListReader::read(). Once only.
    std::optional<std::vector<RecordingState>> read();

private:
    using Token = platform::XmlPropertyListScanner::Token;

    struct CachedCode
    {
        std::string_view raw;
        QString code;
    };

    bool _entries(Token token);
    bool _entry(Token token);
    bool _dictionary(RecordingState &state);
    bool _field(Token token, RecordingField field, RecordingState &state);
    bool _value(Token token, int depth, QVariant &value);
    bool _passOverArray(int depth);
    bool _passOverDictionary(int depth);
    bool _goesOn();
    bool _text(Token token, QString &text);
    bool _codes(QStringList &codes);
    QString _code(std::string_view raw);

    platform::XmlPropertyListReader m_reader;
    platform::XmlPropertyListScanner &m_scanner; ///< The reader's.
    const std::function<bool()> &m_isStopped;
    size_t m_steps = 0;   ///< Values read, as far as they are counted.
    size_t m_entries = 0; ///< Of any kind.
    std::vector<RecordingState> m_states;
    std::array<CachedCode, 16> m_codes; ///< Takes repeat theirs, which are then shared.
};

} // namespace qw

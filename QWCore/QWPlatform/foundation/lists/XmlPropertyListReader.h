#pragma once

#include "XmlPropertyListScanner.h"

#include <QWPlatform/qwplatform_private.h>

#include <QByteArray>
#include <QVariant>

#include <array>
#include <optional>
#include <string>

namespace platform
{

/// Reads one XML property list in one pass, without a tree between. Who knows what a list holds, and wants it in
/// another form than QVariants, reads it step by step; a step that fails leaves no list.
class QWPLATFORM_SHARED_EXPORT XmlPropertyListReader
{
public:
    using Token = XmlPropertyListScanner::Token;

    /// @p data must outlive the reader.
    explicit XmlPropertyListReader(const QByteArray &data);

    /// The list, or none. Once only.
    std::optional<QVariant> read();

    /// @{
    /// What stands before the list's value, and what behind it.
    bool readBeginning();
    bool readEnd();
    /// @}

    /// The value whose first token is @p token; the scanner then stands behind its last. @p depth is the number of
    /// arrays and dictionaries around it.
    bool readValue(Token token, int depth, QVariant &value);

    /// The text up to the end tag of @p name, whose start tag was the last token. It stays until the next is read, and
    /// as long as the data where isInData().
    bool readContent(std::string_view name, std::string_view &content);
    bool isInData(std::string_view content) const { return content.data() != m_buffer.data(); }

    /// Stands where the next step begins.
    XmlPropertyListScanner &scanner() { return m_scanner; }

private:
    struct CachedKey
    {
        std::string_view raw;
        QString key;
    };

    bool _array(int depth, QVariant &value);
    bool _dictionary(int depth, QVariant &value);
    bool _scalar(std::string_view name, std::string_view content, QVariant &value) const;
    bool _key(Token token, QString &key);
    bool _appendText();

    const QByteArray &m_data;
    XmlPropertyListScanner m_scanner;
    std::string m_buffer;             ///< Content that is not one run of plain text in the data.
    std::array<CachedKey, 64> m_keys; ///< Recent keys: records repeat theirs, which are then shared.
};

} // namespace platform

#pragma once

#include "XmlPropertyListScanner.h"

#include <QByteArray>
#include <QVariant>

#include <array>
#include <optional>
#include <string>

namespace platform
{

/// Reads one XML property list in one pass, without a tree between.
class XmlPropertyListReader
{
public:
    /// @p data must outlive the reader.
    explicit XmlPropertyListReader(const QByteArray &data);

    /// The list, or none. Once only.
    std::optional<QVariant> read();

private:
    using Token = XmlPropertyListScanner::Token;

    struct CachedKey
    {
        std::string_view raw;
        QString key;
    };

    bool _value(Token token, int depth, QVariant &value);
    bool _array(int depth, QVariant &value);
    bool _dictionary(int depth, QVariant &value);
    bool _scalar(std::string_view name, std::string_view content, QVariant &value) const;
    bool _key(Token token, QString &key);
    bool _content(std::string_view name, std::string_view &content);
    bool _appendText();

    const QByteArray &m_data;
    XmlPropertyListScanner m_scanner;
    std::string m_buffer;             ///< Content that is not one run of plain text in the data.
    std::array<CachedKey, 64> m_keys; ///< Recent keys: records repeat theirs, which are then shared.
};

} // namespace platform

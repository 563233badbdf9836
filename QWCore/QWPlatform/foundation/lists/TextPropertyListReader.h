#pragma once

#include <QByteArray>
#include <QString>
#include <QVariant>

#include <optional>

namespace platform
{

/// Reads one property list in the old text form, "{ key = value; }" or "( a, b )", or a ".strings" file, which is a
/// dictionary without its braces. All scalars are strings, but for data ("<0fbd77>"). Text in which entries stand so
/// close that they would take much more room than it does is refused.
class TextPropertyListReader
{
public:
    /// @p text is decoded, see decoded().
    explicit TextPropertyListReader(QString text);

    /// UTF-16 with a byte-order mark or UTF-8, with or without one; none for bytes that are neither.
    static std::optional<QString> decoded(const QByteArray &data);

    /// The list, or none. Once only. Text without an entry is an empty dictionary.
    std::optional<QVariant> read();

private:
    std::optional<QVariant> _root();
    bool _value(int depth, QVariant &value);
    bool _entries(int depth, QChar end, QVariant &value);
    bool _entry(int depth, QVariantMap &map);
    bool _array(int depth, QVariant &value);
    bool _data(QVariant &value);
    bool _string(QString &text);
    bool _quoted(QChar quote, QString &text);
    bool _escape(QString &text);
    bool _unicodeEscape(QString &text);
    void _octalEscape(QString &text);
    bool _bare(QString &text);

    QChar _peek() const;
    bool _take(QChar character);
    bool _skipBlanks();
    bool _skipComment();

    QString m_text;
    qsizetype m_at = 0;
    qsizetype m_entriesLeft; ///< Entries that arrays and dictionaries may still get.
};

} // namespace platform

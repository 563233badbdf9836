#pragma once

#include <QByteArray>
#include <QVariant>

#include <string_view>

namespace platform
{

/// Writes one XML property list: UTF-8, keys ascending, one tab a level, dates in whole seconds UTC.
class XmlPropertyListWriter
{
public:
    /// The list's text; empty when @p list holds a value that a property list cannot hold.
    static QByteArray text(const QVariant &list);

private:
    bool _value(const QVariant &value, int depth);
    bool _number(const QVariant &value);
    bool _array(const QVariantList &list, int depth);
    bool _dictionary(const QVariantMap &map, int depth);
    bool _date(const QDateTime &date);
    void _data(const QByteArray &data, int depth);
    bool _element(const char *name, const QString &text);
    void _element(const char *name, std::string_view plainText);
    bool _appendEscaped(const QString &text);
    void _indent(int depth);

    QByteArray m_text;
};

} // namespace platform

#include "PropertyListText.h"

#include <QDateTime>

#include <plist/plist.h>

namespace
{
QByteArray tagged(const char *tag, const QByteArray &content)
{
    return QByteArray("<") + tag + '>' + content + "</" + tag + '>';
}

QByteArray escaped(const QString &text)
{
    return text.toHtmlEscaped().toUtf8();
}

QByteArray dictionary(const QVariantMap &map)
{
    QByteArray content = "\n";
    for (auto entry = map.begin(); entry != map.end(); ++entry)
        content += tagged("key", escaped(entry.key())) + '\n' + PropertyListText::element(entry.value()) + '\n';
    return tagged("dict", content);
}

QByteArray array(const QVariantList &list)
{
    QByteArray content = "\n";
    for (const QVariant &value : list)
        content += PropertyListText::element(value) + '\n';
    return tagged("array", content);
}
} // namespace

QByteArray PropertyListText::begin()
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
           "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
           "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
           "<plist version=\"1.0\">\n";
}

QByteArray PropertyListText::end()
{
    return "\n</plist>\n";
}

QByteArray PropertyListText::element(const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::QVariantMap:
        return dictionary(value.toMap());
    case QMetaType::QVariantList:
    case QMetaType::QStringList:
        return array(value.toList());
    case QMetaType::QDateTime:
        return tagged("date", value.toDateTime().toUTC().toString("yyyy-MM-ddTHH:mm:ssZ").toLatin1());
    case QMetaType::Bool:
        return value.toBool() ? "<true/>" : "<false/>";
    case QMetaType::Double:
        return tagged("real", QByteArray::number(value.toDouble(), 'g', 17));
    case QMetaType::Int:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
        return tagged("integer", value.toString().toLatin1());
    default:
        return tagged("string", escaped(value.toString()));
    }
}

QByteArray PropertyListText::xml(const QVariant &root)
{
    return begin() + element(root) + end();
}

QByteArray PropertyListText::binary(const QByteArray &xml)
{
    plist_t list = nullptr;
    plist_from_xml(xml.constData(), static_cast<uint32_t>(xml.size()), &list);
    char *bytes = nullptr;
    uint32_t size = 0;
    if (list)
        plist_to_bin(list, &bytes, &size);
    const QByteArray result(bytes, size);
    plist_to_bin_free(bytes);
    plist_free(list);
    return result;
}

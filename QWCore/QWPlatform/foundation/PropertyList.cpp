#include "PropertyList.h"

#include "QWPlatform/foundation/files/RegularFile.h"
#include "QWPlatform/foundation/lists/BinaryPropertyListReader.h"
#include "QWPlatform/foundation/lists/TextPropertyListReader.h"
#include "QWPlatform/foundation/lists/XmlPropertyListReader.h"
#include "QWPlatform/foundation/lists/XmlPropertyListWriter.h"

#include <QFile>

namespace platform::PropertyList
{

namespace
{
bool hasWideByteOrderMark(const QByteArray &data)
{
    return data.startsWith("\xFF\xFE") || data.startsWith("\xFE\xFF");
}

bool isEmptyContainer(const QVariant &list)
{
    return list.typeId() == QMetaType::QVariantMap && list.toMap().isEmpty();
}

/// Text that holds nothing but blanks and comments is an empty ".strings" file, but no property list.
std::optional<QVariant> fromPlainText(const QByteArray &data)
{
    std::optional<QVariant> list = fromText(data);
    return list && isEmptyContainer(*list) && !data.contains('{') ? std::nullopt : list;
}
} // namespace

std::optional<QVariant> fromData(const QByteArray &data)
{
    if (BinaryPropertyListReader::isBinary(data))
        return BinaryPropertyListReader(data).read();
    if (hasWideByteOrderMark(data)) {
        const std::optional<QString> text = TextPropertyListReader::decoded(data);
        return text ? fromData(text->toUtf8()) : std::nullopt;
    }
    if (std::optional<QVariant> list = XmlPropertyListReader(data).read())
        return list;
    return fromPlainText(data);
}

std::optional<QVariant> fromFile(const QString &path)
{
    const std::optional<QByteArray> data = readRegularFile(QFile::encodeName(path));
    return data ? fromData(*data) : std::nullopt;
}

QVariantList arrayFromFile(const QString &path)
{
    const QVariant list = fromFile(path).value_or(QVariant());
    return list.typeId() == QMetaType::QVariantList ? list.toList() : QVariantList();
}

std::optional<QVariantMap> dictionaryFromFile(const QString &path)
{
    const QVariant list = fromFile(path).value_or(QVariant());
    return list.typeId() == QMetaType::QVariantMap ? std::optional(list.toMap()) : std::nullopt;
}

QByteArray toXml(const QVariant &list)
{
    return XmlPropertyListWriter::text(list);
}

std::optional<QVariant> fromText(const QByteArray &data)
{
    std::optional<QString> text = TextPropertyListReader::decoded(data);
    return text ? TextPropertyListReader(std::move(*text)).read() : std::nullopt;
}

} // namespace platform::PropertyList

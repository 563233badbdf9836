#pragma once

#include <QWPlatform/qwplatform_export.h>

#include <QByteArray>
#include <QVariant>

#include <optional>

namespace platform
{

/// Property lists as QVariant trees: QVariantMap, QVariantList, QString, bool, qlonglong (qulonglong above its range),
/// double, QDateTime (UTC), QByteArray. Reading takes the XML, binary and old text forms and is strict: garbage,
/// truncation, a wrong shape or more than 512 levels give no list, never half a one. Whatever was read can be written,
/// so texts hold no null characters and dates lie in the years 1 to 9999. Any thread.
namespace PropertyList
{

/// The list in @p data, or none.
QWPLATFORM_EXPORT std::optional<QVariant> fromData(const QByteArray &data);

/// The list in the file at @p path (a real path, see Locations::mapped()), or none when it cannot be read.
QWPLATFORM_EXPORT std::optional<QVariant> fromFile(const QString &path);

/// The array in the file at @p path; empty when there is none or the list is of another kind.
QWPLATFORM_EXPORT QVariantList arrayFromFile(const QString &path);

/// The dictionary in the file at @p path; none when there is none or the list is of another kind.
QWPLATFORM_EXPORT std::optional<QVariantMap> dictionaryFromFile(const QString &path);

/// XML form, UTF-8, keys ascending; empty when @p list holds a value that a property list cannot hold.
QWPLATFORM_EXPORT QByteArray toXml(const QVariant &list);

/// The list in the old text form or a ".strings" file, or none.
QWPLATFORM_EXPORT std::optional<QVariant> fromText(const QByteArray &data);

} // namespace PropertyList

} // namespace platform

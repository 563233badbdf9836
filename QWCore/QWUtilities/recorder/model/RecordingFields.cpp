#include "RecordingFields.h"

#include <QWPlatform/foundation/lists/PropertyListValues.h>

#include <algorithm>
#include <array>
#include <limits>

namespace qw
{

namespace
{
constexpr std::array<std::string_view, 11> recordingKeys{"title",    "filename", "creationDate", "modificationDate",
                                                         "fileSize", "length",   "channels",     "quality",
                                                         "formats",  "locked",   "keywords"};

QDateTime dateOf(const QVariant &value)
{
    return value.typeId() == QMetaType::QDateTime ? value.toDateTime() : QDateTime();
}

/// Not null, so that a text that is there but empty can be told from one that is not.
QString textOf(const QVariant &value)
{
    if (value.typeId() != QMetaType::QString)
        return {};
    const QString text = value.toString();
    return text.isNull() ? QStringLiteral("") : text;
}

quint64 sizeOf(const QVariant &value)
{
    if (value.typeId() == QMetaType::ULongLong)
        return value.toULongLong();
    return platform::isNumber(value) ? static_cast<quint64>(std::max(platform::integerOf(value), 0LL)) : 0;
}

/// @p beyond for what the field cannot hold.
quint32 countOf(const QVariant &value, quint32 beyond)
{
    constexpr qlonglong largest = std::numeric_limits<quint32>::max();
    if (!platform::isNumber(value))
        return 0;
    const qlonglong count = platform::integerOf(value);
    return count >= 0 && count <= largest ? static_cast<quint32>(count) : beyond;
}

std::optional<QStringList> codesOf(const QVariant &value)
{
    if (value.typeId() != QMetaType::QVariantList)
        return std::nullopt;
    QStringList codes;
    for (const QVariant &code : value.toList())
        if (code.typeId() == QMetaType::QString)
            codes.append(code.toString());
    return codes;
}
} // namespace

RecordingField recordingFieldOf(std::string_view key)
{
    const auto *const found = std::find(recordingKeys.begin(), recordingKeys.end(), key);
    return static_cast<RecordingField>(found - recordingKeys.begin());
}

QString *recordingText(RecordingState &state, RecordingField field)
{
    switch (field) {
    case RecordingField::Title:
        return &state.title;
    case RecordingField::Filename:
        return &state.filename;
    case RecordingField::Keywords:
        return &state.keywords;
    default:
        return nullptr;
    }
}

void setRecordingField(RecordingState &state, RecordingField field, const QVariant &value)
{
    switch (field) {
    case RecordingField::Title:
    case RecordingField::Filename:
    case RecordingField::Keywords:
        *recordingText(state, field) = textOf(value);
        break;
    case RecordingField::CreationDate:
        state.creationDate = dateOf(value);
        break;
    case RecordingField::ModificationDate:
        state.modificationDate = dateOf(value);
        break;
    case RecordingField::FileSize:
        state.fileSize = sizeOf(value);
        break;
    case RecordingField::Length:
        state.length = platform::isNumber(value) ? value.toDouble() : 0;
        break;
    case RecordingField::Channels:
        state.channels = countOf(value, 0);
        break;
    case RecordingField::Quality:
        state.quality = countOf(value, std::numeric_limits<quint32>::max());
        break;
    case RecordingField::Formats:
        state.formats = codesOf(value);
        break;
    case RecordingField::Locked:
        state.locked = platform::isNumber(value) && platform::truthOf(value);
        break;
    case RecordingField::Unknown:
        break;
    }
}

} // namespace qw

#include "RecordingListReader.h"

#include "RecordingFields.h"
#include "RecordingXmlReader.h"

#include <QWPlatform/foundation/PropertyList.h>

#include <algorithm>

namespace qw::RecordingListReader
{

namespace
{
constexpr QByteArrayView blanks = " \t\r\n";

/// XML, or nothing that could be an array: text lists that begin like this are data.
bool beginsLikeXml(const QByteArray &data)
{
    QByteArrayView text(data);
    if (text.startsWith("\xEF\xBB\xBF"))
        text = text.sliced(3);
    const auto first = std::find_if_not(text.begin(), text.end(), [](char c) { return blanks.contains(c); });
    return first != text.end() && *first == '<';
}

std::optional<std::vector<RecordingState>> fromOtherForms(const QByteArray &data)
{
    const QVariant list = platform::PropertyList::fromData(data).value_or(QVariant());
    if (list.typeId() != QMetaType::QVariantList)
        return std::nullopt;
    std::vector<RecordingState> states;
    for (const QVariant &entry : list.toList())
        if (entry.typeId() == QMetaType::QVariantMap)
            states.push_back(stateOf(entry.toMap()));
    return states;
}
} // namespace

std::optional<std::vector<RecordingState>> read(const QByteArray &data)
{
    return beginsLikeXml(data) ? RecordingXmlReader(data).read() : fromOtherForms(data);
}

RecordingState stateOf(const QVariantMap &entry)
{
    RecordingState state;
    for (auto item = entry.begin(); item != entry.end(); ++item)
        setRecordingField(state, recordingFieldOf(item.key().toStdString()), item.value());
    return state;
}

} // namespace qw::RecordingListReader

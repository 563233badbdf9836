#include "RecordingListReader.h"

#include "RecordingFields.h"
#include "RecordingXmlReader.h"

#include <QWPlatform/foundation/PropertyList.h>

#include <algorithm>

namespace qw::RecordingListReader
{

namespace
{
constexpr QByteArrayView xmlBlanks = " \t\r\n";

/// XML, or nothing that could be an array: text lists that begin like this are data.
bool beginsLikeXml(const QByteArray &data)
{
    QByteArrayView text(data);
    if (text.startsWith("\xEF\xBB\xBF"))
        text = text.sliced(3);
    const auto first = std::find_if_not(text.begin(), text.end(), [](char c) { return xmlBlanks.contains(c); });
    return first != text.end() && *first == '<';
}

/// Bytes of a list in another form than XML, which is shorter in these: 100,000 takes have half of that.
constexpr qsizetype largestOtherForm = 64 << 20;

std::optional<std::vector<RecordingState>> fromOtherForms(const QByteArray &data)
{
    if (data.size() > largestOtherForm)
        return std::nullopt;
    const QVariant list = platform::PropertyList::fromData(data).value_or(QVariant());
    const QVariantList entries = list.toList();
    if (list.typeId() != QMetaType::QVariantList || static_cast<size_t>(entries.size()) > mostTakes)
        return std::nullopt;
    std::vector<RecordingState> states;
    for (const QVariant &entry : entries)
        if (entry.typeId() == QMetaType::QVariantMap)
            states.push_back(stateOf(entry.toMap()));
    return states;
}
} // namespace

std::optional<std::vector<RecordingState>> read(const QByteArray &data, const std::function<bool()> &isStopped)
{
    return beginsLikeXml(data) ? RecordingXmlReader(data, isStopped).read() : fromOtherForms(data);
}

RecordingState stateOf(const QVariantMap &entry)
{
    RecordingState state;
    for (auto item = entry.begin(); item != entry.end(); ++item)
        setRecordingField(state, recordingFieldOf(item.key().toStdString()), item.value());
    return state;
}

} // namespace qw::RecordingListReader

#include "RecordingList.h"

#include "PropertyListText.h"

#include <algorithm>

bool RecordingList::isEndless() const
{
    return std::ranges::any_of(faults, &ListFault::isEndless);
}

QByteArray RecordingList::text(const std::vector<RecorderTake> &takes) const
{
    QByteArray text = PropertyListText::begin() + "<array>\n" + _entries(takes) + "</array>" + PropertyListText::end();
    if (isBinary)
        text = PropertyListText::binary(text);
    for (const ListFault &fault : faults)
        text = fault.text(text);
    return text;
}

HttpBody RecordingList::endless(const std::vector<RecorderTake> &takes) const
{
    const QByteArray begin = PropertyListText::begin() + "<array>\n";
    const QByteArray entries = _entries(takes);
    return HttpBody::generated(HttpBody::unknownSize, [begin, entries](qint64 offset, qint64 most) {
        if (offset < begin.size())
            return begin.mid(offset, most);
        return entries.mid((offset - begin.size()) % entries.size(), most);
    });
}

QByteArray RecordingList::_entries(const std::vector<RecorderTake> &takes) const
{
    QByteArray text;
    for (qsizetype index = 0; const RecorderTake &take : takes)
        text += PropertyListText::element(_entry(take, index++)) + '\n';
    return text;
}

QVariant RecordingList::_entry(const RecorderTake &take, qsizetype index) const
{
    QVariantMap good = take.listEntry();
    if (isBlue)
        good["formats"] = QStringList();
    QVariant entry = good;
    for (const ListFault &fault : faults)
        if (entry.typeId() == QMetaType::QVariantMap)
            entry = fault.entry(entry.toMap(), index);
    return entry;
}

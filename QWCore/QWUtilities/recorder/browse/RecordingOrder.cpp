#include "RecordingOrder.h"

#include "QWUtilities/recorder/model/QWVeskRecording.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <numeric>
#include <string_view>

namespace qw
{

namespace
{
/// One take with the beginning of what it is sorted by, as numbers that are quickly compared.
struct SortableTake
{
    uint64_t first;
    uint64_t second;
    uint32_t take;
};

constexpr uint64_t signBit = uint64_t(1) << 63;

/// Orders like the number, "not a number" first.
uint64_t sortableNumber(double number)
{
    if (std::isnan(number))
        return 0;
    const auto bits = std::bit_cast<uint64_t>(number + 0.0); // no negative zero
    return bits & signBit ? ~bits : bits | signBit;
}

/// Orders like the date, an invalid one first.
uint64_t sortableDate(const QDateTime &date)
{
    return date.isValid() ? static_cast<uint64_t>(date.toMSecsSinceEpoch()) ^ signBit : 0;
}

/// Orders like the text for people, a missing list first.
uint64_t sortableFormats(const QWVeskRecording &recording)
{
    constexpr size_t masks = RecordingFormats::every + 1U;
    static const std::array<uint64_t, masks> ranks = [] {
        std::array<RecordingFormats::Mask, masks> order;
        std::iota(order.begin(), order.end(), RecordingFormats::Mask(0));
        std::sort(order.begin(), order.end(),
                  [](auto one, auto other) { return RecordingFormats::textOf(one) < RecordingFormats::textOf(other); });
        std::array<uint64_t, masks> result;
        for (size_t i = 0; i < masks; ++i)
            result[order[i]] = i + 1;
        return result;
    }();
    return recording.hasFormats() ? ranks[recording.formatMask()] : 0;
}

struct SortableColumn
{
    const char *key;
    uint64_t (*value)(const QWVeskRecording &);
};

using Take = QWVeskRecording;
constexpr std::array<SortableColumn, 8> sortableColumns{{
    {"length", [](const Take &take) { return sortableNumber(take.length()); }},
    {"fileSize", [](const Take &take) -> uint64_t { return take.fileSize(); }},
    {"channels", [](const Take &take) -> uint64_t { return take.channels(); }},
    {"quality", [](const Take &take) -> uint64_t { return take.quality(); }},
    {"creationDate", [](const Take &take) { return sortableDate(take.creationDate()); }},
    {"modificationDate", [](const Take &take) { return sortableDate(take.modificationDate()); }},
    {"formats", [](const Take &take) { return sortableFormats(take); }},
    {"locked", [](const Take &take) -> uint64_t { return take.locked(); }},
}};

const SortableColumn *sortableColumn(const QString &key)
{
    for (const SortableColumn &column : sortableColumns)
        if (key == QLatin1String(column.key))
            return &column;
    return nullptr;
}

/// How many bytes all titles begin with alike.
size_t commonBeginning(const RecordingKeys &keys, size_t count)
{
    if (count == 0)
        return 0;
    const std::string_view first = keys.titleKey(0);
    size_t common = first.size();
    for (size_t i = 1; i < count && common > 0; ++i) {
        const std::string_view key = keys.titleKey(i).substr(0, common);
        common = static_cast<size_t>(std::mismatch(key.begin(), key.end(), first.begin()).first - key.begin());
    }
    return common;
}

/// The bytes of @p key from @p begin on, the first one highest; 0 where there is none.
uint64_t eightBytes(std::string_view key, size_t begin)
{
    uint64_t number = 0;
    for (size_t i = begin; i < begin + 8; ++i)
        number = number << 8 | (i < key.size() ? static_cast<unsigned char>(key[i]) : 0U);
    return number;
}

/// Compares takes by titles of which all begin with the same bytes.
class TitleOrder
{
public:
    explicit TitleOrder(const RecordingList &list)
        : m_keys(list.keys)
        , m_common(commonBeginning(list.keys, list.recordings.size()))
    {
    }

    SortableTake sortable(uint32_t take) const
    {
        const std::string_view key = m_keys.titleKey(take);
        return {eightBytes(key, m_common), eightBytes(key, m_common + 8), take};
    }

    /// Below 0, 0 or above 0.
    int compare(const SortableTake &one, const SortableTake &other) const
    {
        if (one.first != other.first)
            return one.first < other.first ? -1 : 1;
        if (one.second != other.second)
            return one.second < other.second ? -1 : 1;
        return m_keys.titleKey(one.take).compare(m_keys.titleKey(other.take));
    }

private:
    const RecordingKeys &m_keys;
    size_t m_common;
};

/// Compares takes by one number.
class ValueOrder
{
public:
    ValueOrder(const RecordingList &list, const QString &key)
        : m_recordings(list.recordings)
        , m_column(sortableColumn(key))
    {
    }

    SortableTake sortable(uint32_t take) const
    {
        return {m_column ? m_column->value(*m_recordings[take]) : 0, 0, take};
    }

    static int compare(const SortableTake &one, const SortableTake &other)
    {
        return one.first < other.first ? -1 : one.first > other.first;
    }

private:
    const RecordingList::Recordings &m_recordings;
    const SortableColumn *m_column;
};

template <class Order>
std::vector<SortableTake> sortedTakes(const Order &order, size_t count)
{
    std::vector<SortableTake> takes(count);
    for (uint32_t i = 0; i < count; ++i)
        takes[i] = order.sortable(i);
    std::sort(takes.begin(), takes.end(), [&](const SortableTake &one, const SortableTake &other) {
        const int difference = order.compare(one, other);
        return difference < 0 || (difference == 0 && one.take < other.take);
    });
    return takes;
}
} // namespace

RecordingOrder::RecordingOrder(const RecordingList &list, const QString &key)
{
    if (key == QLatin1String("title"))
        _make(TitleOrder(list), list.recordings.size());
    else
        _make(ValueOrder(list, key), list.recordings.size());
}

template <class Order>
void RecordingOrder::_make(const Order &order, size_t count)
{
    const std::vector<SortableTake> sorted = sortedTakes(order, count);
    m_ascending.reserve(count);
    m_beginsGroup.reserve(count);
    for (size_t i = 0; i < count; ++i) {
        m_ascending.push_back(sorted[i].take);
        m_beginsGroup.push_back(i == 0 || order.compare(sorted[i - 1], sorted[i]) != 0);
    }
}

std::vector<uint32_t> RecordingOrder::takes(bool ascending, const std::vector<bool> &isShown) const
{
    std::vector<uint32_t> shown;
    shown.reserve(m_ascending.size());
    const auto append = [&](size_t begin, size_t end) {
        for (size_t i = begin; i < end; ++i)
            if (isShown.empty() || isShown[m_ascending[i]])
                shown.push_back(m_ascending[i]);
    };
    if (ascending) {
        append(0, m_ascending.size());
        return shown;
    }
    for (size_t end = m_ascending.size(), begin = end; begin-- > 0;) {
        if (!m_beginsGroup[begin])
            continue;
        append(begin, end);
        end = begin;
    }
    return shown;
}

} // namespace qw

#include "BinaryPropertyListReader.h"

#include "PropertyListScalars.h"

#include <algorithm>
#include <bit>
#include <cmath>

namespace platform
{

namespace
{
constexpr quint64 headerSize = 8;
constexpr quint64 trailerSize = 32;

// What a list may come to. The files that programs write stay far below: an entry of theirs takes four bytes or more.
constexpr quint64 entriesOfAnyFile = 65536;
constexpr quint64 bytesPerFurtherEntry = 4;
constexpr quint64 weightOfAnyFile = quint64(1) << 20;
constexpr quint64 weightPerByte = 32;
constexpr quint64 weightOfTags = 24; ///< Of "<integer>12</integer>" and the like.

constexpr qint64 referenceSeconds = 978307200;      ///< 2001-01-01 00:00 UTC, from which dates count.
constexpr double earliestSeconds = -63'113'904'000; ///< The year 1 begins.
constexpr double latestSeconds = 252'423'993'599;   ///< The year 9999 ends.

enum Type
{
    Simple = 0x0,
    Integer = 0x1,
    Real = 0x2,
    Date = 0x3,
    Data = 0x4,
    Ascii = 0x5,
    Utf16 = 0x6,
    Array = 0xA,
    Dictionary = 0xD
};

QVariant integerVariant(quint64 value)
{
    return value >> 63 ? QVariant(static_cast<qulonglong>(value)) : QVariant(static_cast<qlonglong>(value));
}
} // namespace

BinaryPropertyListReader::BinaryPropertyListReader(const QByteArray &data)
    : m_data(data)
{
}

std::optional<QVariant> BinaryPropertyListReader::read()
{
    if (!isBinary(m_data) || !_readTrailer())
        return std::nullopt;
    Object *top = _object(m_top, 0);
    return top ? std::optional(std::move(top->value)) : std::nullopt;
}

bool BinaryPropertyListReader::_readTrailer()
{
    const auto size = static_cast<quint64>(m_data.size());
    if (size < headerSize + trailerSize)
        return false;
    const quint64 trailer = size - trailerSize;
    m_offsetSize = _byte(trailer + 6);
    m_referenceSize = _byte(trailer + 7);
    const quint64 count = _number(trailer + 8, 8);
    m_top = _number(trailer + 16, 8);
    m_end = _number(trailer + 24, 8);
    const auto isSize = [](int bytes) { return bytes >= 1 && bytes <= 8; };
    if (!isSize(m_offsetSize) || !isSize(m_referenceSize) || m_end < headerSize || m_end > trailer)
        return false;
    m_unclaimed = m_end - headerSize;
    m_entriesLeft = entriesOfAnyFile + size / bytesPerFurtherEntry;
    m_mostWeight = weightOfAnyFile + size * weightPerByte;
    if (count > (trailer - m_end) / static_cast<quint64>(m_offsetSize) || m_top >= count || count > m_unclaimed)
        return false;
    m_places.resize(count);
    return true;
}

/// The object with number @p reference, read; null when it is broken, part of a cycle or too deep.
BinaryPropertyListReader::Object *BinaryPropertyListReader::_object(quint64 reference, int depth)
{
    if (reference >= m_places.size())
        return nullptr;
    const bool isNew = m_places[reference] == 0;
    if (isNew) {
        m_objects.emplace_back();
        m_places[reference] = static_cast<quint32>(m_objects.size());
    }
    Object &object = m_objects[m_places[reference] - 1];
    if (isNew && !_begin(object, reference, depth))
        return nullptr; // the whole list is given up: it stays unread
    const bool usable = object.isRead && depth + object.height <= maximumPropertyListDepth;
    return usable && object.weight <= m_mostWeight ? &object : nullptr;
}

bool BinaryPropertyListReader::_begin(Object &object, quint64 reference, int depth)
{
    const quint64 at = _number(m_end + reference * static_cast<quint64>(m_offsetSize), m_offsetSize);
    object.isRead = at >= headerSize && _fits(at, 1, 1) && _claim(1, 0) && _parse(at, depth, object);
    return object.isRead;
}

bool BinaryPropertyListReader::_parse(quint64 at, int depth, Object &object)
{
    const int marker = _byte(at);
    object.weight = weightOfTags;
    switch (marker >> 4) {
    case Simple:
        return _simple(marker, object.value);
    case Integer:
        return _integer(at + 1, marker & 0xF, object.value);
    case Real:
        return _real(at + 1, marker & 0xF, object.value);
    case Date:
        return marker == 0x33 && _date(at + 1, object.value);
    default:
        return _counted(at, marker >> 4, depth, object);
    }
}

/// Texts, data and containers, which tell how much they hold.
bool BinaryPropertyListReader::_counted(quint64 at, int type, int depth, Object &object)
{
    const std::optional<Body> body = _body(at, _bytesPerCount(type));
    if (!body)
        return false;
    const bool isContainer = type == Array || type == Dictionary;
    const quint64 bytes = body->count * static_cast<quint64>(_bytesPerCount(type)); // lies in the file
    if (!_claim(bytes, isContainer ? body->count : 0))
        return false;
    if (!isContainer) {
        object.weight += bytes;
        return _text(*body, type, object.value);
    }
    if (depth >= maximumPropertyListDepth)
        return false;
    return type == Array ? _array(*body, depth + 1, object) : _dictionary(*body, depth + 1, object);
}

/// Takes from what there is for all objects together; false when it is not enough.
bool BinaryPropertyListReader::_claim(quint64 bytes, quint64 entries)
{
    if (bytes > m_unclaimed || entries > m_entriesLeft)
        return false;
    m_unclaimed -= bytes;
    m_entriesLeft -= entries;
    return true;
}

int BinaryPropertyListReader::_bytesPerCount(int type) const
{
    switch (type) {
    case Array:
        return m_referenceSize;
    case Dictionary:
        return 2 * m_referenceSize;
    default:
        return type == Utf16 ? 2 : 1;
    }
}

bool BinaryPropertyListReader::_simple(int marker, QVariant &value) const
{
    value = marker == 0x09;
    return marker == 0x08 || marker == 0x09;
}

bool BinaryPropertyListReader::_integer(quint64 at, int sizeExponent, QVariant &value) const
{
    if (sizeExponent > 4 || !_fits(at, 1, quint64(1) << sizeExponent))
        return false;
    if (sizeExponent < 3) { // short ones have no sign
        value = static_cast<qlonglong>(_number(at, 1 << sizeExponent));
    } else if (sizeExponent == 3) {
        value = static_cast<qlonglong>(_number(at, 8));
    } else {
        const quint64 high = _number(at, 8);
        const quint64 low = _number(at + 8, 8);
        const bool negative = high == ~quint64(0) && low >> 63;
        if (high != 0 && !negative)
            return false;
        value = negative ? QVariant(static_cast<qlonglong>(low)) : integerVariant(low);
    }
    return true;
}

bool BinaryPropertyListReader::_real(quint64 at, int sizeExponent, QVariant &value) const
{
    if ((sizeExponent != 2 && sizeExponent != 3) || !_fits(at, 1, quint64(1) << sizeExponent))
        return false;
    value = sizeExponent == 2 ? static_cast<double>(std::bit_cast<float>(static_cast<quint32>(_number(at, 4))))
                              : std::bit_cast<double>(_number(at, 8));
    return true;
}

bool BinaryPropertyListReader::_date(quint64 at, QVariant &value) const
{
    if (!_fits(at, 1, 8))
        return false;
    const double seconds = std::bit_cast<double>(_number(at, 8));
    if (!(seconds >= earliestSeconds && seconds <= latestSeconds)) // not a number too
        return false;
    value = QDateTime::fromMSecsSinceEpoch(referenceSeconds * 1000 + std::llround(seconds * 1000), Qt::UTC);
    return true;
}

bool BinaryPropertyListReader::_text(const Body &body, int type, QVariant &value) const
{
    const QByteArrayView bytes(m_data.constData() + body.at, static_cast<qsizetype>(body.count));
    if (type == Data) {
        value = bytes.toByteArray();
        return true;
    }
    if (type != Ascii && type != Utf16)
        return false;
    const QString text = type == Ascii ? QString::fromLatin1(bytes) : _utf16(body);
    value = text;
    const bool isAscii = type == Utf16 || std::none_of(bytes.begin(), bytes.end(), [](char c) { return c & 0x80; });
    return isAscii && PropertyListScalars::isWritable(text);
}

QString BinaryPropertyListReader::_utf16(const Body &body) const
{
    QString text(static_cast<qsizetype>(body.count), Qt::Uninitialized);
    quint64 at = body.at;
    for (QChar &unit : text) {
        unit = QChar(static_cast<char16_t>(_number(at, 2)));
        at += 2;
    }
    return text;
}

bool BinaryPropertyListReader::_array(const Body &body, int depth, Object &object)
{
    QVariantList list;
    list.reserve(static_cast<qsizetype>(body.count));
    for (quint64 i = 0; i < body.count; ++i) {
        const Object *item = _entry(body.at + i * static_cast<quint64>(m_referenceSize), depth, object);
        if (!item)
            return false;
        list.append(item->value);
    }
    object.value = std::move(list);
    ++object.height;
    return true;
}

bool BinaryPropertyListReader::_dictionary(const Body &body, int depth, Object &object)
{
    QVariantMap map;
    const auto size = static_cast<quint64>(m_referenceSize);
    for (quint64 i = 0; i < body.count; ++i) {
        const Object *key = _entry(body.at + i * size, depth, object);
        const Object *item = key ? _entry(body.at + (body.count + i) * size, depth, object) : nullptr;
        if (!item || key->value.typeId() != QMetaType::QString)
            return false;
        map.insert(key->value.toString(), item->value);
    }
    object.value = std::move(map);
    ++object.height;
    return true;
}

/// The object that the reference at @p at names, counted into @p container.
BinaryPropertyListReader::Object *BinaryPropertyListReader::_entry(quint64 at, int depth, Object &container)
{
    Object *entry = _object(_number(at, m_referenceSize), depth);
    if (!entry)
        return nullptr;
    container.height = std::max(container.height, entry->height);
    container.lines += entry->lines;
    container.weight += entry->weight + entry->lines;
    return container.weight <= m_mostWeight ? entry : nullptr;
}

std::optional<BinaryPropertyListReader::Body> BinaryPropertyListReader::_body(quint64 at, int bytesPerCount) const
{
    Body body{at + 1, static_cast<quint64>(_byte(at) & 0xF)};
    if (body.count == 0xF) { // the count follows as an integer object
        const int marker = _fits(at + 1, 1, 1) ? _byte(at + 1) : -1;
        const int exponent = marker & 0xF;
        if (marker >> 4 != Integer || exponent > 3 || !_fits(at + 2, 1, quint64(1) << exponent))
            return std::nullopt;
        body = {at + 2 + (quint64(1) << exponent), _number(at + 2, 1 << exponent)};
    }
    return _fits(body.at, body.count, static_cast<quint64>(bytesPerCount)) ? std::optional(body) : std::nullopt;
}

/// True when @p count times @p size bytes from @p at lie among the objects.
bool BinaryPropertyListReader::_fits(quint64 at, quint64 count, quint64 size) const
{
    return at <= m_end && count <= (m_end - at) / size;
}

quint64 BinaryPropertyListReader::_number(quint64 at, int size) const
{
    quint64 value = 0;
    for (int i = 0; i < size; ++i)
        value = value << 8 | static_cast<quint64>(_byte(at + static_cast<quint64>(i)));
    return value;
}

int BinaryPropertyListReader::_byte(quint64 at) const
{
    return static_cast<unsigned char>(m_data.constData()[at]);
}

} // namespace platform

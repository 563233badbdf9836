#include "ResourceFork.h"

#include <QtEndian>

namespace platform
{

namespace
{
constexpr qsizetype typeListField = 24;
constexpr qsizetype nameListField = 26;
constexpr qsizetype typeSize = 8;
constexpr qsizetype referenceSize = 12;
constexpr quint16 noName = 0xFFFF;

/// The upper half of Mac Roman, from 0x80.
constexpr char16_t macRoman[] =
    u"ÄÅÇÉÑÖÜáàâäãåçéèêëíìîïñóòôöõúùûü†°¢£§•¶ß®©™´¨≠ÆØ∞±≤≥¥µ∂∑∏π∫ªºΩæø¿¡¬√ƒ≈∆«»…\u00a0ÀÃÕŒœ–—“”‘’÷◊ÿŸ⁄€‹›ﬁﬂ"
    u"‡·‚„‰ÂÊÁËÈÍÎÏÌÓÔ\uf8ffÒÚÛÙıˆ˜¯˘˙˚¸˝˛ˇ";

} // namespace

QString ResourceFork::fromMacRoman(QByteArrayView bytes)
{
    QString text;
    text.reserve(bytes.size());
    for (const char byte : bytes) {
        const auto value = static_cast<unsigned char>(byte);
        text += value < 0x80 ? QChar(value) : QChar(macRoman[value - 0x80]);
    }
    return text;
}

/// Reads big-endian numbers and remembers that one lay outside, so that the steps below need not ask each time.
class ResourceFork::Reader
{
public:
    explicit Reader(const QByteArray &data)
        : m_data(data)
        , m_unclaimedMap(data.size())
    {
    }

    bool failed() const { return m_failed; }

    template <class T>
    T number(qsizetype offset)
    {
        const QByteArrayView bytes = slice(offset, sizeof(T));
        return bytes.isEmpty() ? T(0) : qFromBigEndian<T>(bytes.data());
    }

    QByteArrayView slice(qsizetype offset, qsizetype size)
    {
        if (offset < 0 || size < 0 || offset > m_data.size() || size > m_data.size() - offset) {
            m_failed = true;
            return {};
        }
        return QByteArrayView(m_data).sliced(offset, size);
    }

    /// Finds the two areas; false when they do not lie in the file.
    bool readHeader()
    {
        m_dataStart = number<quint32>(0);
        m_map = number<quint32>(4);
        m_dataSize = number<quint32>(8);
        const auto mapSize = number<quint32>(12);
        slice(m_dataStart, m_dataSize);
        m_unclaimedData = m_dataSize;
        slice(m_map, mapSize);
        m_typeList = m_map + number<quint16>(m_map + typeListField);
        m_nameList = m_map + number<quint16>(m_map + nameListField);
        return !m_failed;
    }

    std::vector<Group> groups()
    {
        const int count = (number<quint16>(m_typeList) + 1) & 0xFFFF; // 0xFFFF stands for none
        std::vector<Group> groups;
        for (int i = 0; i < count && !m_failed; ++i)
            groups.push_back(group(m_typeList + 2 + i * typeSize));
        return groups;
    }

private:
    Group group(qsizetype at)
    {
        Group group{number<quint32>(at), {}};
        const int count = number<quint16>(at + 4) + 1;
        const qsizetype references = m_typeList + number<quint16>(at + 6);
        slice(references, count * referenceSize); // before reading: a wrong count must not cost time
        claim(m_unclaimedMap, count * referenceSize);
        for (int i = 0; i < count && !m_failed; ++i)
            group.resources.push_back(resource(references + i * referenceSize));
        return group;
    }

    Resource resource(qsizetype at)
    {
        Resource resource;
        resource.id = number<qint16>(at);
        resource.name = name(number<quint16>(at + 2));
        resource.data = data(number<quint32>(at + 4) & 0xFFFFFF);
        return resource;
    }

    QString name(quint16 offset)
    {
        if (offset == noName)
            return {};
        const auto known = m_names.constFind(offset);
        if (known != m_names.cend())
            return *known;
        const qsizetype at = m_nameList + offset;
        return *m_names.insert(offset, fromMacRoman(slice(at + 1, number<quint8>(at))));
    }

    QByteArray data(quint32 offset)
    {
        const auto known = m_blobs.constFind(offset);
        return known == m_blobs.cend() ? *m_blobs.insert(offset, blob(offset)) : *known;
    }

    QByteArray blob(qsizetype offset)
    {
        const auto size = number<quint32>(m_dataStart + offset);
        if (offset + 4 + size > m_dataSize)
            m_failed = true;
        claim(m_unclaimedData, 4 + qsizetype(size));
        return m_failed ? QByteArray() : slice(m_dataStart + offset + 4, size).toByteArray();
    }

    /// Takes @p size bytes for one purpose alone: what two have claimed lies upon one another.
    void claim(qsizetype &unclaimed, qsizetype size)
    {
        unclaimed -= size;
        m_failed = m_failed || unclaimed < 0;
    }

    const QByteArray &m_data;
    bool m_failed = false;
    qsizetype m_unclaimedMap;      ///< Bytes that no list of references holds.
    qsizetype m_unclaimedData = 0; ///< Bytes of the data area that no resource holds.
    QHash<quint16, QString> m_names;
    QHash<quint32, QByteArray> m_blobs;
    qsizetype m_dataStart = 0;
    qsizetype m_dataSize = 0;
    qsizetype m_map = 0;
    qsizetype m_typeList = 0;
    qsizetype m_nameList = 0;
};

std::optional<ResourceFork> ResourceFork::fromData(const QByteArray &data, QString *error)
{
    Reader reader(data);
    ResourceFork fork;
    if (reader.readHeader())
        fork.m_groups = reader.groups();
    if (!reader.failed()) {
        fork._index();
        return fork;
    }
    if (error)
        *error = QStringLiteral("The file is no resource file, or is damaged.");
    return std::nullopt;
}

std::vector<ResourceFork::Resource> ResourceFork::resourcesOfType(quint32 type) const
{
    const auto found = m_types.find(type);
    return found == m_types.end() ? std::vector<Resource>() : m_groups[*found].resources;
}

std::optional<ResourceFork::Resource> ResourceFork::resource(quint32 type, qint16 id) const
{
    const auto found = m_ids.find({type, id});
    return found == m_ids.end() ? std::nullopt : std::optional(m_groups[m_types[type]].resources[*found]);
}

void ResourceFork::_index()
{
    for (std::size_t i = 0; i < m_groups.size(); ++i) {
        const Group &group = m_groups[i];
        if (m_types.contains(group.type))
            continue;
        m_types.insert(group.type, i);
        for (std::size_t place = group.resources.size(); place-- > 0;) // the first of an id is put in last
            m_ids.insert({group.type, group.resources[place].id}, place);
    }
}

} // namespace platform

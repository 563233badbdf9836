#pragma once

#include <QWPlatform/qwplatform_private.h>

#include <QByteArray>
#include <QHash>
#include <QString>

#include <optional>
#include <utility>
#include <vector>

namespace platform
{

/// The typed resources of a resource file, in the published format: big-endian header, data area and map. A value;
/// every offset is checked, so a damaged file gives no fork, never a crash. Any thread. Resources that refer to the
/// same bytes share them; areas that lie upon one another count as damage, so that a fork takes about the room of its
/// file.
class QWPLATFORM_SHARED_EXPORT ResourceFork
{
public:
    struct Resource
    {
        qint16 id = 0;
        QString name;    ///< Mac Roman in the file; "" when it has none.
        QByteArray data; ///< As it stands in the file; shared by the resources that refer to it.
    };

    /// The text of @p bytes in the character set of such files.
    static QString fromMacRoman(QByteArrayView bytes);

    /// The fork in @p data; none, and a sentence for a log in @p error, when it is no resource file or is damaged.
    static std::optional<ResourceFork> fromData(const QByteArray &data, QString *error = nullptr);

    /// The resources of @p type in the order of the map; empty when there are none.
    std::vector<Resource> resourcesOfType(quint32 type) const;

    /// The first resource of @p type with @p id; none when there is none.
    std::optional<Resource> resource(quint32 type, qint16 id) const;

private:
    class Reader;

    struct Group
    {
        quint32 type;
        std::vector<Resource> resources;
    };

    ResourceFork() = default;

    void _index();

    std::vector<Group> m_groups;                          ///< In the order of the map.
    QHash<quint32, std::size_t> m_types;                  ///< The first group of each type.
    QHash<std::pair<quint32, qint16>, std::size_t> m_ids; ///< Place of the first resource in its type's first group.
};

} // namespace platform

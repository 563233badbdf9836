#include "ComponentBundle.h"

#include "QWPlatform/devices/components/ResourceFork.h"
#include "QWPlatform/foundation/PropertyList.h"
#include "QWPlatform/foundation/files/RegularFile.h"

#include <QFile>
#include <QFileInfo>
#include <QtEndian>

#include <set>
#include <tuple>

namespace platform::ComponentBundle
{

namespace
{
constexpr quint32 componentResource = fourCharCode("thng");
constexpr qsizetype nameResourceField = 26; // type and id of the name's resource, in the published record
constexpr qsizetype componentResourceSize = 44;

QString infoPath(const QString &path)
{
    return path + "/Contents/Info.plist";
}

QString resourceFilePath(const QString &path)
{
    return path + "/Contents/Resources/" + QFileInfo(path).completeBaseName() + ".rsrc";
}

/// The code that the four characters of @p text stand for; 0 for other text.
quint32 codeOf(const QString &text)
{
    const QByteArray bytes = text.toLatin1();
    return bytes.size() == 4 ? qFromBigEndian<quint32>(bytes.constData()) : 0;
}

/// The units of a bundle, each once.
class Units
{
public:
    void add(InstalledComponent found)
    {
        const auto &[type, subtype, manufacturer, flags, flagsMask] = found.component;
        if (type != 0 && m_known.emplace(type, subtype, manufacturer).second)
            m_units.push_back(std::move(found));
    }

    std::vector<InstalledComponent> take() { return std::move(m_units); }

private:
    std::vector<InstalledComponent> m_units;
    std::set<std::tuple<quint32, quint32, quint32>> m_known;
};

void addFromInfo(Units &units, const QVariantMap &info)
{
    for (const QVariant &element : info.value("AudioComponents").toList()) {
        const QVariantMap unit = element.toMap();
        InstalledComponent found;
        found.component.type = codeOf(unit.value("type").toString());
        found.component.subtype = codeOf(unit.value("subtype").toString());
        found.component.manufacturer = codeOf(unit.value("manufacturer").toString());
        found.name = unit.value("name").toString().toUtf8();
        found.factoryFunction = unit.value("factoryFunction").toString();
        units.add(std::move(found));
    }
}

/// The text of the Pascal string in @p data, as much of it as is there.
QByteArray pascalText(const QByteArray &data)
{
    return data.isEmpty() ? data : data.mid(1, static_cast<unsigned char>(data.front()));
}

InstalledComponent fromResource(const ResourceFork &fork, const QByteArray &data)
{
    const auto word = [&](qsizetype offset) { return qFromBigEndian<quint32>(data.constData() + offset); };
    InstalledComponent found;
    found.component = {word(0), word(4), word(8), 0, 0};
    const auto nameID = qFromBigEndian<qint16>(data.constData() + nameResourceField + 4);
    if (const auto name = fork.resource(word(nameResourceField), nameID))
        found.name = ResourceFork::fromMacRoman(pascalText(name->data)).toUtf8();
    return found;
}

void addFromResources(Units &units, const QString &path)
{
    const auto data = readRegularFile(QFile::encodeName(path));
    const auto fork = data ? ResourceFork::fromData(*data) : std::nullopt;
    if (!fork)
        return;
    for (const ResourceFork::Resource &resource : fork->resourcesOfType(componentResource))
        if (resource.data.size() >= componentResourceSize)
            units.add(fromResource(*fork, resource.data));
}
} // namespace

QStringList watchedPaths(const QString &path)
{
    return {path, path + "/Contents", infoPath(path), resourceFilePath(path)};
}

std::vector<InstalledComponent> components(const QString &path)
{
    Units units;
    if (const auto info = PropertyList::dictionaryFromFile(infoPath(path)))
        addFromInfo(units, *info);
    addFromResources(units, resourceFilePath(path));
    return units.take();
}

} // namespace platform::ComponentBundle

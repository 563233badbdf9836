#include "ComponentBundle.h"

#include "../devices/ResourceFork.h"
#include "../foundation/PropertyList.h"
#include "../foundation/RegularFile.h"

#include <QFile>
#include <QFileInfo>
#include <QtEndian>

#include <algorithm>

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

void add(std::vector<InstalledComponent> &components, InstalledComponent found)
{
    const auto known = std::find_if(components.begin(), components.end(), [&](const InstalledComponent &component) {
        return component.component == found.component;
    });
    if (known == components.end() && found.component.type != 0)
        components.push_back(std::move(found));
}

void addFromInfo(std::vector<InstalledComponent> &components, const QVariantMap &info)
{
    for (const QVariant &element : info.value("AudioComponents").toList()) {
        const QVariantMap unit = element.toMap();
        InstalledComponent found;
        found.component.type = codeOf(unit.value("type").toString());
        found.component.subtype = codeOf(unit.value("subtype").toString());
        found.component.manufacturer = codeOf(unit.value("manufacturer").toString());
        found.name = unit.value("name").toString().toUtf8();
        found.factoryFunction = unit.value("factoryFunction").toString();
        add(components, std::move(found));
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
        found.name = pascalText(name->data);
    return found;
}

void addFromResources(std::vector<InstalledComponent> &components, const QString &path)
{
    const auto data = readRegularFile(QFile::encodeName(path));
    const auto fork = data ? ResourceFork::fromData(*data) : std::nullopt;
    if (!fork)
        return;
    for (const ResourceFork::Resource &resource : fork->resourcesOfType(componentResource))
        if (resource.data.size() >= componentResourceSize)
            add(components, fromResource(*fork, resource.data));
}
} // namespace

QStringList watchedPaths(const QString &path)
{
    return {path, path + "/Contents", infoPath(path), resourceFilePath(path)};
}

std::vector<InstalledComponent> components(const QString &path)
{
    std::vector<InstalledComponent> components;
    if (const auto info = PropertyList::dictionaryFromFile(infoPath(path)))
        addFromInfo(components, *info);
    addFromResources(components, resourceFilePath(path));
    return components;
}

} // namespace platform::ComponentBundle

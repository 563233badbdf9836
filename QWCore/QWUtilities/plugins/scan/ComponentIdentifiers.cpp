#include "ComponentIdentifiers.h"

#include "PathExtension.h"

#include <QWBase/QWFile.h>
#include <QWBase/files/QWResourceFile.h>
#include <QWPlatform/System.h>
#include <QWPlatform/foundation/Bundle.h>
#include <QWPlatform/foundation/Localization.h>
#include <QWPlatform/foundation/Locations.h>

#include <array>
#include <cstring>

namespace qw
{

namespace
{
/// The unit that a 'thng' resource registers. Flags and flags mask stay zero, which is how units are registered.
std::optional<QWComponentDescription> descriptionOfResource(const QByteArray &data)
{
    std::array<quint32, 3> words;
    if (data.size() < static_cast<qsizetype>(sizeof words))
        return std::nullopt;
    std::memcpy(words.data(), data.constData(), sizeof words);
    return QWComponentDescription(words[0], words[1], words[2]);
}

/// The unit that the bundle @p entry in @p folder registers first.
std::optional<QWComponentDescription> registeredUnit(const QString &folder, const QString &entry)
{
    const auto file = QWResourceFile::initWithPath(
        platform::formatted("%@/%@/Contents/Resources/%@.rsrc", {folder, entry, qw::withoutPathExtension(entry)}));
    const auto things = file ? file->resourcesOfType(platform::fourCharCode("thng")) : std::vector<QByteArray>();
    return things.empty() ? std::nullopt : descriptionOfResource(things.front());
}

QString identifierOfBundle(const QString &path)
{
    const platform::Bundle bundle(platform::System::current().locations().mapped(path));
    const QString identifier = bundle.identifier();
    if (!identifier.isEmpty())
        return identifier;
    const QString executable = bundle.objectForInfoDictionaryKey("CFBundleExecutable").toString();
    const QString name = bundle.objectForInfoDictionaryKey("CFBundleName").toString();
    return platform::formatted("com.unknown.%@", {executable.isEmpty() ? name : executable});
}
} // namespace

void ComponentIdentifiers::loadFromDirectory(const QString &path)
{
    const auto entries = QWFile::contentsOfDirectoryAtPath(path);
    for (const QString &entry : entries.value_or(QStringList())) {
        if (qw::pathExtension(entry) != QLatin1StringView("component"))
            continue;
        if (const auto description = registeredUnit(path, entry))
            m_descriptions.insert(identifierOfBundle(path + '/' + entry), *description);
    }
}

QString ComponentIdentifiers::identifierOf(const QWComponentDescription &description) const
{
    return m_descriptions.key(description);
}

} // namespace qw

#include "QWResourceFile.h"

#include "QWBase/QWError.h"

#include <QWPlatform/System.h>
#include <QWPlatform/foundation/Localization.h>
#include <QWPlatform/foundation/Locations.h>
#include <QWPlatform/foundation/files/RegularFile.h>
#include <QWPlatform/plugins/AudioComponent.h>

#include <QFile>
#include <QHash>

#include <algorithm>

namespace
{
/// Sizes of the fields of a 'thng' resource's base record, in bytes: the component's five words, then code, name, info
/// and icon, each a type and an id.
constexpr qsizetype thingFields[] = {4, 4, 4, 4, 4, 4, 2, 4, 2, 4, 2, 4, 2};

/// Turns the fields of @p data, which come most significant byte first, into the machine's order; as many as are whole.
void convertThingToHostOrder(QByteArray &data)
{
    if constexpr (Q_BYTE_ORDER == Q_BIG_ENDIAN)
        return;
    qsizetype at = 0;
    for (const qsizetype size : thingFields) {
        if (at + size > data.size())
            return;
        std::reverse(data.begin() + at, data.begin() + at + size);
        at += size;
    }
}

/// The same for all of @p things; those that share their bytes share them afterwards too.
void convertThingsToHostOrder(std::vector<QByteArray> &things)
{
    const std::vector<QByteArray> inFileOrder = things; // what the keys below point to
    QHash<const char *, QByteArray> converted;
    for (QByteArray &thing : things) {
        const char *const bytes = thing.constData();
        if (!converted.contains(bytes))
            convertThingToHostOrder(*converted.insert(bytes, thing));
        thing = converted.value(bytes);
    }
}

std::optional<QWResourceFile> fail(QWError *error, const QString &path, const QString &reason)
{
    if (error)
        *error = QWError(
            platform::formatted(platform::localized("The resource file '%@' could not be opened."), {path}), reason);
    return std::nullopt;
}
} // namespace

QWResourceFile::QWResourceFile(platform::ResourceFork fork)
    : m_fork(std::move(fork))
{
}

std::optional<QWResourceFile> QWResourceFile::initWithPath(const QString &path, QWError *error)
{
    const QString real = platform::System::current().locations().mapped(path);
    const auto data = platform::readRegularFile(QFile::encodeName(real));
    if (!data)
        return fail(error, path, platform::localized("It cannot be read."));
    QString reason;
    auto fork = platform::ResourceFork::fromData(*data, &reason);
    return fork ? std::optional(QWResourceFile(std::move(*fork))) : fail(error, path, reason);
}

std::vector<QByteArray> QWResourceFile::resourcesOfType(quint32 type) const
{
    std::vector<QByteArray> all;
    for (platform::ResourceFork::Resource &resource : m_fork.resourcesOfType(type))
        all.push_back(std::move(resource.data));
    if (type == platform::fourCharCode("thng"))
        convertThingsToHostOrder(all);
    return all;
}

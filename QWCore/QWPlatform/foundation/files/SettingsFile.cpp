#include "SettingsFile.h"

#include "QWPlatform/foundation/PropertyList.h"
#include "RegularFile.h"

#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

namespace platform::SettingsFile
{

namespace
{
/// What the file holds.
struct Stored
{
    enum State
    {
        Good,       ///< A missing file holds nothing, and is good.
        Garbage,    ///< It is there and is no dictionary.
        Unreachable ///< It cannot be read now, which says nothing about its content.
    };

    State state = Good;
    QVariantMap values;
};

Stored read(const QString &path)
{
    const QFileInfo file(path);
    if (!file.exists())
        return {};
    if (file.isFile() && file.size() > largestRegularFile)
        return {Stored::Garbage, {}};
    const auto data = readRegularFile(QFile::encodeName(path));
    if (!data)
        return {Stored::Unreachable, {}};
    const QVariant list = PropertyList::fromData(*data).value_or(QVariant());
    return {list.typeId() == QMetaType::QVariantMap ? Stored::Good : Stored::Garbage, list.toMap()};
}

bool setAside(const QString &path)
{
    const QString target = movedAside(path);
    if (!target.isEmpty())
        qWarning("The settings in \"%s\" cannot be read; they are kept as \"%s\".", qUtf8Printable(path),
                 qUtf8Printable(target));
    return !target.isEmpty();
}

bool write(const QString &path, const QVariantMap &values)
{
    const QByteArray xml = PropertyList::toXml(values);
    QSaveFile file(path);
    return !xml.isEmpty() && file.open(QIODevice::WriteOnly) && file.write(xml) == xml.size() && file.commit();
}

QVariantMap changed(QVariantMap values, const Changes &changes)
{
    for (const auto &[key, value] : changes) {
        if (value)
            values.insert(key, *value);
        else
            values.remove(key);
    }
    return values;
}
} // namespace

QVariantMap values(const QString &path)
{
    return read(path).values;
}

std::optional<QVariantMap> apply(const QString &path, const Changes &changes, LockFile::Patience patience,
                                 const std::atomic<bool> *hurry)
{
    QDir().mkpath(QFileInfo(path).path());
    LockFile lock(path + u".lock");
    if (!lock.acquire(patience, hurry))
        return std::nullopt;
    const Stored before = read(path);
    if (before.state == Stored::Unreachable || (before.state == Stored::Garbage && !setAside(path)))
        return std::nullopt;
    const QVariantMap after = changed(before.values, changes);
    return write(path, after) ? std::optional(after) : std::nullopt;
}

} // namespace platform::SettingsFile

#include "ShortcutFiles.h"

#include <QWPlatform/foundation/Localization.h>
#include <QWPlatform/foundation/PropertyList.h>
#include <QWPlatform/foundation/files/RegularFile.h>

#include <QFile>
#include <QFileInfo>

namespace qw::ShortcutFiles
{

namespace
{
QVariantList withoutRepresentedObjects(const QVariantList &array)
{
    QVariantList plain;
    for (const QVariant &entry : array) {
        QVariantMap state = entry.toMap();
        state.remove("representedObject");
        plain.append(state);
    }
    return plain;
}

QByteArray textOf(const QVariantList &array)
{
    const QByteArray text = platform::PropertyList::toXml(array);
    return text.isEmpty() ? platform::PropertyList::toXml(withoutRepresentedObjects(array)) : text;
}

bool overwrite(QFile &file, const QByteArray &data)
{
    return file.seek(0) && file.write(data) == data.size() && file.resize(data.size());
}

bool fail(QWError *error, const QString &path, const QString &reason)
{
    if (error)
        *error = QWError(
            platform::formatted(platform::localized("“%@” could not be written."), {QFileInfo(path).fileName()}),
            reason);
    return false;
}
} // namespace

std::optional<QVariantList> readArray(const QString &path)
{
    const QVariant list = platform::PropertyList::fromFile(path).value_or(QVariant());
    return list.typeId() == QMetaType::QVariantList ? std::optional(list.toList()) : std::nullopt;
}

bool writeArray(const QString &path, const QVariantList &array, QWError *error)
{
    QFile file(path);
    const bool isNew = !QFileInfo::exists(path);
    const bool isUsable = isNew || QFileInfo(path).isFile(); // a device would never end
    if (!isUsable)
        return fail(error, path, platform::localized("What has this name is no file."));
    if (!file.open(QIODevice::ReadWrite | QIODevice::Unbuffered))
        return fail(error, path, file.errorString());
    if (file.size() > platform::largestRegularFile) // what was there is kept in memory until the new text is whole
        return fail(error, path, platform::localized("What has this name is too large to be replaced."));
    const QByteArray before = file.readAll();
    if (overwrite(file, textOf(array)))
        return true;
    const QString reason = file.errorString();
    file.unsetError();
    if (isNew)
        file.remove();
    else
        overwrite(file, before);
    return fail(error, path, reason);
}

bool setAside(const QString &path, QWError *error)
{
    const QFileInfo file(path);
    if (!file.exists())
        return true;
    QString aside = file.path() + "/_kept " + file.fileName();
    for (int i = 2; QFileInfo::exists(aside); ++i)
        aside = file.path() + QString("/_kept %1 ").arg(i) + file.fileName();
    QFile moved(path);
    return moved.rename(aside) || fail(error, path, moved.errorString());
}

} // namespace qw::ShortcutFiles

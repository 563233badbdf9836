#include "ComponentCache.h"

#include "QWPlatform/foundation/files/RegularFile.h"

#include <QCryptographicHash>
#include <QDataStream>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

namespace platform
{

namespace
{
constexpr quint32 magic = 0x51574332; // "QWC2": the form below, whose names are UTF-8
constexpr auto streamVersion = QDataStream::Qt_6_4;

QByteArray checksum(const QByteArray &body)
{
    return QCryptographicHash::hash(body, QCryptographicHash::Md5);
}

void put(QDataStream &stream, const InstalledComponent &unit)
{
    stream << unit.component.type << unit.component.subtype << unit.component.manufacturer;
    stream << unit.name << unit.author << unit.uri << unit.factoryFunction;
}

void get(QDataStream &stream, InstalledComponent &unit)
{
    stream >> unit.component.type >> unit.component.subtype >> unit.component.manufacturer;
    stream >> unit.name >> unit.author >> unit.uri >> unit.factoryFunction;
}

void put(QDataStream &stream, qint64 stamp)
{
    stream << stamp;
}

void get(QDataStream &stream, qint64 &stamp)
{
    stream >> stamp;
}

template <class T>
void putAll(QDataStream &stream, const std::vector<T> &values);
template <class T>
void getAll(QDataStream &stream, std::vector<T> &values);

void put(QDataStream &stream, const InstalledBundle &bundle)
{
    stream << bundle.path;
    putAll(stream, bundle.stamps);
    putAll(stream, bundle.components);
}

void get(QDataStream &stream, InstalledBundle &bundle)
{
    stream >> bundle.path;
    getAll(stream, bundle.stamps);
    getAll(stream, bundle.components);
}

template <class T>
void putAll(QDataStream &stream, const std::vector<T> &values)
{
    stream << static_cast<quint32>(values.size());
    for (const T &value : values)
        put(stream, value);
}

template <class T>
void getAll(QDataStream &stream, std::vector<T> &values)
{
    quint32 count = 0;
    stream >> count;
    for (quint32 i = 0; i < count && stream.status() == QDataStream::Ok; ++i)
        get(stream, values.emplace_back());
}
} // namespace

std::optional<ComponentCache::Contents> ComponentCache::read(const QString &path)
{
    const auto data = readRegularFile(QFile::encodeName(path));
    if (!data)
        return std::nullopt;
    QDataStream outer(*data);
    outer.setVersion(streamVersion);
    quint32 found = 0;
    QByteArray sum;
    QByteArray body;
    outer >> found;
    if (found != magic)
        return std::nullopt;
    outer >> sum >> body;
    if (outer.status() != QDataStream::Ok || checksum(body) != sum)
        return std::nullopt;
    QDataStream inner(body);
    inner.setVersion(streamVersion);
    Contents contents;
    inner >> contents.lv2Path;
    getAll(inner, contents.bundles);
    return inner.status() == QDataStream::Ok ? std::optional(std::move(contents)) : std::nullopt;
}

bool ComponentCache::write(const QString &path, const QString &lv2Path, const std::vector<InstalledBundle> &bundles)
{
    QByteArray body;
    QDataStream inner(&body, QIODevice::WriteOnly);
    inner.setVersion(streamVersion);
    inner << lv2Path;
    putAll(inner, bundles);
    QDir().mkpath(QFileInfo(path).path());
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    QDataStream outer(&file);
    outer.setVersion(streamVersion);
    outer << magic << checksum(body) << body;
    return file.commit();
}

} // namespace platform

#include "ComponentCodes.h"

#include "QWPlatform/foundation/PropertyList.h"
#include "QWPlatform/foundation/files/LockFile.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFileInfo>
#include <QSaveFile>
#include <QtEndian>

#include <algorithm>

namespace platform
{

namespace
{
constexpr char letters[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789";
constexpr unsigned capitals = 26;
constexpr unsigned allLetters = sizeof letters - 1;

/// Four printable characters from @p text. Codes in lower case alone are the system's, hence the capital in front.
quint32 codeFor(const QByteArray &text)
{
    const QByteArray hash = QCryptographicHash::hash(text, QCryptographicHash::Md5);
    quint32 code = static_cast<unsigned char>(letters[static_cast<unsigned char>(hash.at(0)) % capitals]);
    for (int i = 1; i < 4; ++i) {
        const auto value = qFromBigEndian<quint16>(hash.constData() + 2 * i);
        code = code << 8 | static_cast<unsigned char>(letters[value % allLetters]);
    }
    return code;
}

QString textOf(std::pair<quint32, quint32> pair)
{
    char bytes[8];
    qToBigEndian(pair.first, bytes);
    qToBigEndian(pair.second, bytes + 4);
    return QString::fromLatin1(bytes, sizeof bytes);
}
} // namespace

ComponentCodes::ComponentCodes(QString path)
    : m_path(std::move(path))
{
}

void ComponentCodes::reserve(const AudioComponent &component)
{
    m_taken.emplace(component.subtype, component.manufacturer);
}

void ComponentCodes::assign(const std::vector<InstalledComponent *> &components, Keep keep)
{
    LockFile lock(m_path + ".lock");
    if (keep == Keep::Yes) {
        QDir().mkpath(QFileInfo(m_path).path());
        if (!lock.acquire(LockFile::brief)) // another host assigns codes meanwhile
            keep = Keep::No;
    }
    _read();
    if (_assignMissing(components) && keep == Keep::Yes)
        _write();
    for (InstalledComponent *component : components)
        std::tie(component->component.subtype, component->component.manufacturer) = m_pairs.value(component->uri);
}

bool ComponentCodes::_assignMissing(const std::vector<InstalledComponent *> &components)
{
    std::vector<const InstalledComponent *> missing;
    for (const InstalledComponent *component : components)
        if (!m_pairs.contains(component->uri))
            missing.push_back(component);
    // By URI, so that probing does not depend on the order of folders.
    std::sort(missing.begin(), missing.end(), [](const auto *a, const auto *b) { return a->uri < b->uri; });
    for (const InstalledComponent *component : missing) {
        const Pair pair = _freePair(*component);
        m_pairs.insert(component->uri, pair);
        m_taken.insert(pair);
    }
    return !missing.empty();
}

ComponentCodes::Pair ComponentCodes::_freePair(const InstalledComponent &component) const
{
    const quint32 manufacturer = codeFor(component.author.toUtf8());
    const QByteArray uri = component.uri.toUtf8();
    Pair pair{codeFor(uri), manufacturer};
    for (int probe = 1; m_taken.contains(pair); ++probe)
        pair.first = codeFor(uri + ' ' + QByteArray::number(probe));
    return pair;
}

void ComponentCodes::_read()
{
    const QVariantMap stored = PropertyList::dictionaryFromFile(m_path).value_or(QVariantMap());
    for (auto entry = stored.begin(); entry != stored.end(); ++entry) {
        const QByteArray text = entry->toString().toLatin1();
        if (text.size() != 8)
            continue;
        const Pair pair{qFromBigEndian<quint32>(text.constData()), qFromBigEndian<quint32>(text.constData() + 4)};
        m_pairs.insert(entry.key(), pair);
        m_taken.insert(pair);
    }
}

void ComponentCodes::_write() const
{
    QVariantMap stored;
    for (auto pair = m_pairs.begin(); pair != m_pairs.end(); ++pair)
        stored.insert(pair.key(), textOf(*pair));
    QSaveFile file(m_path);
    if (file.open(QIODevice::WriteOnly) && file.write(PropertyList::toXml(stored)) >= 0)
        file.commit();
}

} // namespace platform

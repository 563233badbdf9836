#include "ShortcutFolder.h"

#include "LegacyShortcuts.h"
#include "PresetNames.h"
#include "ShortcutFiles.h"

#include <QWBase/QWFile.h>
#include <QWPlatform/System.h>
#include <QWPlatform/foundation/Bundle.h>

#include <QFile>
#include <QFileInfo>

#include <utility>

namespace qw
{

namespace
{
constexpr auto factoryPresets = "Keyboard Shortcuts"; // the host's resource
} // namespace

ShortcutFolder::ShortcutFolder(QString path, QString current)
    : m_path(std::move(path))
    , m_current(std::move(current))
{
}

bool ShortcutFolder::make(QWError *error) const
{
    const bool isWhole = _makeDirectory(error);
    return _makeCurrentFile(error) && isWhole;
}

QVariantList ShortcutFolder::current()
{
    const auto changes = ShortcutFiles::readArray(m_current);
    m_keepsCurrent = !changes && QWFile::existsAtPath(m_current);
    return changes.value_or(QVariantList());
}

bool ShortcutFolder::setCurrent(const QVariantList &changes, QWError *error)
{
    if (m_keepsCurrent && !ShortcutFiles::setAside(m_current, error))
        return false;
    m_keepsCurrent = false;
    return ShortcutFiles::writeArray(m_current, changes, error);
}

QStringList ShortcutFolder::presets() const
{
    const QStringList entries = QWFile::contentsOfDirectoryAtPath(m_path).value_or(QStringList());
    QStringList names;
    for (const QString &entry : entries) {
        if (entries.size() > 1 && !PresetNames::isHidden(entry))
            names.append(PresetNames::withoutExtension(entry));
    }
    return names;
}

bool ShortcutFolder::hasPreset(const QString &name) const
{
    return QWFile::fileExistsAtPath(_presetPath(name));
}

std::optional<QVariantList> ShortcutFolder::preset(const QString &name) const
{
    return ShortcutFiles::readArray(_presetPath(name));
}

bool ShortcutFolder::setPreset(const QString &name, const QVariantList &changes, QWError *error) const
{
    return ShortcutFiles::writeArray(_presetPath(name), changes, error);
}

/// For a preset that cannot be read, nobody meant to give up the current changes.
bool ShortcutFolder::usePreset(const QString &name, QWError *error)
{
    const auto changes = preset(name);
    if (!changes && ShortcutFiles::readArray(m_current) != QVariantList())
        m_keepsCurrent = true;
    return setCurrent(changes.value_or(QVariantList()), error);
}

bool ShortcutFolder::addPreset(const QString &name, const QVariantList &changes, QWError *error) const
{
    const bool takesAPlace = hasPreset(name) && preset(name) != changes;
    const bool isFree = !takesAPlace || ShortcutFiles::setAside(_presetPath(name), error);
    return isFree && setPreset(name, changes, error);
}

/// The first time, the host's factory presets come along.
bool ShortcutFolder::_makeDirectory(QWError *error) const
{
    if (QWFile::existsAtPath(m_path))
        return true;
    QWFile::createDirectoryAtPath(QFileInfo(m_path).path());
    const QString factory = platform::System::current().mainBundle().pathForResource(factoryPresets, {});
    const bool isCopied = !factory.isEmpty() && QWFile::copyPathToPath(factory, m_path, error);
    if (!isCopied && !QWFile::createDirectoryAtPath(m_path, error))
        return false;
    // A copy out of a bundle that nobody may write would be one too.
    QFile::setPermissions(m_path, QFile::permissions(m_path) | QFile::WriteOwner);
    return isCopied || factory.isEmpty();
}

bool ShortcutFolder::_makeCurrentFile(QWError *error) const
{
    if (!QWFile::existsAtPath(m_current))
        LegacyShortcuts::moveTo(m_current);
    return QWFile::existsAtPath(m_current) || ShortcutFiles::writeArray(m_current, {}, error);
}

QString ShortcutFolder::_presetPath(const QString &name) const
{
    return m_path + '/' + name + ".plist";
}

} // namespace qw

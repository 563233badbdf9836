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

void ShortcutFolder::make() const
{
    _makeDirectory();
    _makeCurrentFile();
}

QVariantList ShortcutFolder::current()
{
    const auto changes = ShortcutFiles::readArray(m_current);
    m_keepsCurrent = !changes && QWFile::existsAtPath(m_current);
    return changes.value_or(QVariantList());
}

void ShortcutFolder::setCurrent(const QVariantList &changes)
{
    if (std::exchange(m_keepsCurrent, false))
        ShortcutFiles::setAside(m_current);
    ShortcutFiles::writeArray(m_current, changes);
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

void ShortcutFolder::setPreset(const QString &name, const QVariantList &changes) const
{
    ShortcutFiles::writeArray(_presetPath(name), changes);
}

/// For a preset that cannot be read, nobody meant to give up the current changes.
void ShortcutFolder::usePreset(const QString &name)
{
    const auto changes = preset(name);
    if (!changes && ShortcutFiles::readArray(m_current) != QVariantList())
        m_keepsCurrent = true;
    setCurrent(changes.value_or(QVariantList()));
}

void ShortcutFolder::addPreset(const QString &name, const QVariantList &changes) const
{
    if (hasPreset(name) && preset(name) != changes)
        ShortcutFiles::setAside(_presetPath(name));
    setPreset(name, changes);
}

/// The first time, the host's factory presets come along.
void ShortcutFolder::_makeDirectory() const
{
    if (QWFile::existsAtPath(m_path))
        return;
    QWFile::createDirectoryAtPath(QFileInfo(m_path).path());
    const QString factory = platform::System::current().mainBundle().pathForResource(factoryPresets, {});
    if (factory.isEmpty() || !QWFile::copyPathToPath(factory, m_path))
        QWFile::createDirectoryAtPath(m_path);
    // A copy out of a bundle that nobody may write would be one too.
    QFile::setPermissions(m_path, QFile::permissions(m_path) | QFile::WriteOwner);
}

void ShortcutFolder::_makeCurrentFile() const
{
    if (!QWFile::existsAtPath(m_current))
        LegacyShortcuts::moveTo(m_current);
    if (!QWFile::existsAtPath(m_current))
        ShortcutFiles::writeArray(m_current, {});
}

QString ShortcutFolder::_presetPath(const QString &name) const
{
    return m_path + '/' + name + ".plist";
}

} // namespace qw

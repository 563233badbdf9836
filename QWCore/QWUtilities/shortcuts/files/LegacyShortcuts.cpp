#include "LegacyShortcuts.h"

#include "ShortcutFiles.h"

#include <QWPlatform/System.h>
#include <QWPlatform/foundation/PropertyList.h>
#include <QWPlatform/foundation/UserDefaults.h>

namespace qw::LegacyShortcuts
{

namespace
{
constexpr auto key = "Keyboard Shortcuts Custom";

/// Stored as an array, or as data that holds one.
QVariant unarchived(const QVariant &value)
{
    if (value.typeId() != QMetaType::QByteArray)
        return value;
    return platform::PropertyList::fromData(value.toByteArray()).value_or(QVariant());
}
} // namespace

void moveTo(const QString &path)
{
    platform::UserDefaults &defaults = platform::System::current().userDefaults();
    const QVariant changes = unarchived(defaults.object(key));
    if (changes.typeId() == QMetaType::QVariantList && ShortcutFiles::writeArray(path, changes.toList()))
        defaults.removeObject(key);
}

} // namespace qw::LegacyShortcuts

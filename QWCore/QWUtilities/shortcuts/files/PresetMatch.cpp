#include "PresetMatch.h"

#include "QWUtilities/shortcuts/QWKeyboardShortcuts.h"
#include "ShortcutFiles.h"

#include <QWPlatform/foundation/lists/PropertyListValues.h>

namespace qw
{

namespace
{
QString numbersIn(const QVariantMap &state, const QStringList &names)
{
    QStringList numbers;
    for (const QString &name : names)
        numbers.append(QString::number(platform::integerOf(state.value(name))));
    return numbers.join(' ');
}
} // namespace

PresetMatch::PresetMatch(const QWKeyboardShortcuts &registry)
    : m_directory(registry.shortcutsDirectory())
    , m_current(_keysIn(ShortcutFiles::readArray(registry.currentShortcutsPath()).value_or(QVariantList())))
{
}

bool PresetMatch::isCurrent(const QString &preset) const
{
    const auto array = ShortcutFiles::readArray(m_directory + '/' + preset + ".plist");
    return array && _keysIn(*array) == m_current;
}

PresetMatch::Keys PresetMatch::_keysIn(const QVariantList &array)
{
    Keys keys;
    for (const QVariant &entry : array) {
        const QVariantMap state = entry.toMap();
        const QString shortcut = state.value("action").toString() + ' ' + numbersIn(state, {"tag"});
        keys.insert(shortcut, numbersIn(state, {"character", "modifiers"}));
    }
    return keys;
}

} // namespace qw

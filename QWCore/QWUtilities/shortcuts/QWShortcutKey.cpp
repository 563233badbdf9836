#include "QWShortcutKey.h"

#include "QWShortcut.h"
#include "QWUtilities/shortcuts/model/ReservedKeys.h"
#include "QWUtilities/shortcuts/model/ShortcutGlyphs.h"

#include <QWPlatform/foundation/lists/PropertyListValues.h>

#include <utility>

using platform::KeyEvent;

namespace
{
constexpr quint32 storedModifiers = KeyEvent::Shift | KeyEvent::Control | KeyEvent::Option | KeyEvent::Command;

char16_t lowerCase(char16_t character)
{
    return QChar(character).toLower().unicode();
}
} // namespace

QWShortcutKey::QWShortcutKey(char16_t character, quint32 modifiers)
    : m_character(character)
    , m_modifiers(modifiers)
{
}

QWShortcutKey::QWShortcutKey(const QWShortcutKey &other)
    : QWShortcutKey(other.m_character, other.m_modifiers)
{
}

QWShortcutKey &QWShortcutKey::operator=(const QWShortcutKey &other)
{
    _set(other.m_character, other.m_modifiers);
    return *this;
}

std::optional<QWShortcutKey> QWShortcutKey::shortcutKeyForEvent(const KeyEvent &event)
{
    QWShortcutKey key;
    key.setFromEvent(event);
    return key.isClear() ? std::nullopt : std::optional(key);
}

void QWShortcutKey::setFromEvent(const KeyEvent &event)
{
    if (event.character == 0)
        clear();
    else
        _set(lowerCase(event.character), event.modifierFlags & storedModifiers);
}

void QWShortcutKey::clear()
{
    _set(0, 0);
}

QVariantMap QWShortcutKey::state() const
{
    return {{"character", qlonglong(m_character)}, {"modifiers", qlonglong(m_modifiers)}};
}

void QWShortcutKey::setState(const QVariantMap &state)
{
    static const QString characterKey = "character";
    static const QString modifiersKey = "modifiers";
    const auto character = state.constFind(characterKey);
    const auto modifiers = state.constFind(modifiersKey);
    _set(character == state.cend() ? m_character : static_cast<char16_t>(platform::integerOf(*character)),
         modifiers == state.cend() ? m_modifiers : static_cast<quint32>(platform::integerOf(*modifiers)));
}

bool QWShortcutKey::isReserved() const
{
    return qw::isReservedKey(m_character, m_modifiers & storedModifiers);
}

QString QWShortcutKey::displayString() const
{
    return isClear() ? QString() : qw::modifierGlyphs(m_modifiers) + qw::keyText(m_character, m_modifiers);
}

void QWShortcutKey::_set(char16_t character, quint32 modifiers)
{
    const QWShortcutKey before = *this;
    m_character = character;
    m_modifiers = modifiers;
    if (m_owner && before != *this)
        m_owner->_keyDidChange(before);
}

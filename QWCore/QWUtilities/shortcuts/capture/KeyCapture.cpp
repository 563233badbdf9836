#include "KeyCapture.h"

#include "QWUtilities/shortcuts/QWKeyboardShortcuts.h"
#include "QWUtilities/shortcuts/QWShortcut.h"

#include <QWPlatform/foundation/Localization.h>

namespace qw
{

using platform::formatted;
using platform::KeyEvent;
using platform::localized;

namespace
{
const QWShortcutKey escapeKey(27, 0);

/// Shift makes back-tab of the Tab key, so that the combinations reserved for Tab with Shift come as this character.
constexpr char16_t tab = 9;
constexpr char16_t backTab = 25;

bool isReserved(const QWShortcutKey &key)
{
    const bool isBackTab = key.character() == backTab;
    return key.isReserved() || (isBackTab && QWShortcutKey(tab, key.modifiers() | KeyEvent::Shift).isReserved());
}
} // namespace

KeyCapture::KeyCapture(QWKeyboardShortcuts &registry)
    : m_registry(registry)
{
}

KeyCapture::~KeyCapture() = default;

void KeyCapture::begin(std::shared_ptr<QWShortcut> shortcut)
{
    m_editingShortcut = std::move(shortcut);
    m_editingKey = m_editingShortcut->key();
    m_refusal.clear();
    m_clearedName.clear();
    m_canClear = !m_editingKey.isClear();
    m_clearsOther = false;
    m_escapes = 0;
}

void KeyCapture::end()
{
    m_editingShortcut.reset();
    m_editingKey.clear();
}

void KeyCapture::see(const KeyEvent &event)
{
    if (!m_editingShortcut || event.isRepeat)
        return;
    const bool isOptionDown = event.modifierFlags & KeyEvent::Option;
    if (event.type == KeyEvent::FlagsChanged)
        m_clearsOther = isOptionDown;
    else
        _keyDown(event);
    m_canClear = isOptionDown ? isInUse() : !m_editingKey.isClear();
}

void KeyCapture::clear()
{
    if (!m_editingShortcut)
        return;
    m_escapes = 0;
    m_canClear = false;
    if (m_clearsOther)
        return clearOther();
    m_editingKey.clear();
    m_clearedName.clear();
    _judge();
}

/// The key is judged anew, since it may be reserved as well, or a third shortcut may have it too.
void KeyCapture::clearOther()
{
    const auto other = _conflict();
    if (!other)
        return;
    m_escapes = 0;
    m_clearedName = other->name();
    other->clearKey();
    m_registry.saveToDefaults();
    m_registry.reloadDisplay();
    _judge();
    m_canClear = isInUse();
}

void KeyCapture::commit()
{
    if (!m_editingShortcut || !m_isAllowed)
        return;
    m_editingShortcut->setKey(m_editingKey);
    m_registry.saveToDefaults();
    m_registry.reloadDisplay();
}

QString KeyCapture::nameOfOther() const
{
    const auto other = _conflict();
    return other ? other->name() : QString();
}

/// The other shortcut that has the key. No key at all is held by nobody, and neither is the shortcut's own.
std::shared_ptr<QWShortcut> KeyCapture::_conflict() const
{
    const bool isFree = !m_editingShortcut || m_editingKey.isClear() || m_editingKey == m_editingShortcut->key();
    return isFree ? nullptr : m_registry.shortcutWithKey(m_editingKey);
}

void KeyCapture::_keyDown(const KeyEvent &event)
{
    m_editingKey.setFromEvent(event);
    m_clearedName.clear();
    m_escapes = m_editingKey == escapeKey ? m_escapes + 1 : 0;
    _judge();
}

void KeyCapture::_judge()
{
    const auto conflict = _conflict();
    if (isReserved(m_editingKey))
        m_refusal = localized("Sorry, that key combination is reserved.");
    else if (conflict)
        m_refusal = formatted(localized("Sorry, that key combination is in use by '%@'."), {conflict->name()});
    else
        m_refusal.clear();
    m_isAllowed = m_refusal.isEmpty();
}

} // namespace qw

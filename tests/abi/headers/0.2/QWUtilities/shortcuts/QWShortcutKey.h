#pragma once

#include <QWPlatform/appkit/KeyEvent.h>
#include <QWUtilities/qwutilities_export.h>

#include <QString>
#include <QVariantMap>

#include <optional>

class QWShortcut;

/// One key combination: a character and the modifiers held with it. A value; the one inside a QWShortcut tells its
/// shortcut of every change. Without a character it is clear, whatever its modifiers. Its two fields lie open: one is
/// made of every key press.
class QWUTILITIES_EXPORT QWShortcutKey
{
public:
    QWShortcutKey() = default;                            ///< Clear.
    QWShortcutKey(char16_t character, quint32 modifiers); ///< As they are given, see character() and modifiers().
    QWShortcutKey(const QWShortcutKey &other);            ///< Belongs to no shortcut.
    QWShortcutKey &operator=(const QWShortcutKey &other); ///< Stays with the shortcut that it belongs to.

    /// The key that @p event brings; none for an event without a character.
    static std::optional<QWShortcutKey> shortcutKeyForEvent(const platform::KeyEvent &event);

    /// Letters are taken in lower case, and of the modifiers Shift, Control, Option and Command only.
    void setFromEvent(const platform::KeyEvent &event);

    void clear();                                     ///< Takes character and modifiers away.
    bool isClear() const { return m_character == 0; } ///< Has no character, and so matches no key press.

    /// As operator==().
    bool isEqualToShortcutKey(const QWShortcutKey &other) const { return *this == other; }

    /// Character and modifiers are the same; whose key it is does not count.
    bool operator==(const QWShortcutKey &other) const
    {
        return m_character == other.m_character && m_modifiers == other.m_modifiers;
    }
    QWShortcutKey copy() const { return *this; } ///< Belongs to no shortcut.

    /// "character" and "modifiers", both integers.
    QVariantMap state() const;
    void setState(const QVariantMap &state); ///< Takes those present; what is no number counts as 0.

    /// True for the combinations that the desktop keeps for itself.
    bool isReserved() const;

    /// Glyphs, modifiers first in a fixed order ("⇧⌘S"); "" for a clear key.
    QString displayString() const;

    char16_t character() const { return m_character; } ///< A UTF-16 code unit, see platform::KeyEvent; 0: no key.
    void setCharacter(char16_t character) { _set(character, m_modifiers); } ///< As it is given: no case is changed.
    quint32 modifiers() const { return m_modifiers; } ///< Event modifier bits, see platform::KeyEvent::Flag.
    void setModifiers(quint32 modifiers) { _set(m_character, modifiers); } ///< As they are given, unknown ones too.

private:
    friend class QWShortcut;

    void _set(char16_t character, quint32 modifiers);

    char16_t m_character = 0;
    quint32 m_modifiers = 0;
    QWShortcut *m_owner = nullptr; ///< Told of changes; null for a key that belongs to none. Never copied.
};

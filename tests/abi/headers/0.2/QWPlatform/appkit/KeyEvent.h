#pragma once

#include <QWPlatform/qwplatform_export.h>

#include <QEvent>

namespace platform
{

/// What an event says about keys, in the desktop platform's terms: one character that names the key, and the event
/// modifier bits. A value, made from a Qt event or, in a test, field by field; it stays open, since one is made for
/// every key press.
struct QWPLATFORM_EXPORT KeyEvent
{
    /// What happens to the key.
    enum Type : quint8
    {
        Other = 0,        ///< Nothing: the event is about something else.
        KeyDown = 10,     ///< It goes down, or repeats.
        KeyUp = 11,       ///< It goes up.
        FlagsChanged = 12 ///< A modifier key by itself went down or up.
    };

    /// Event modifier bits.
    enum Flag : quint32
    {
        Shift = 0x20000,       ///< Held, whether or not the character needs it.
        Control = 0x40000,     ///< Qt's MetaModifier.
        Option = 0x80000,      ///< Qt's AltModifier.
        Command = 0x100000,    ///< Qt's ControlModifier, the main shortcut modifier.
        NumericPad = 0x200000, ///< A key of the numeric keypad, or an arrow key.
        Function = 0x800000    ///< A key that types no character (U+F700 and up).
    };

    /// Says nothing.
    KeyEvent() = default;

    /// A key goes down as a key press, or ahead of it as the question whether it is a shortcut (ShortcutOverride).
    KeyEvent(const QEvent &event);

    /// True for events whose type() may be other than Other; any thread.
    static bool concerns(const QEvent &event)
    {
        return event.type() == QEvent::ShortcutOverride || event.type() == QEvent::KeyPress ||
               event.type() == QEvent::KeyRelease;
    }

    Type type = Other;     ///< All below stays as it is here for Other.
    bool isRepeat = false; ///< The key was down already.

    /// First UTF-16 unit of what the key types with Shift as it is held and no other modifier: letters in the case
    /// typed, the layout's own (Cyrillic too, whatever Ctrl makes of it), the accent of a dead key, the platform's
    /// code point of a key that types none; 0 for nothing.
    char16_t character = 0;
    quint32 modifierFlags = 0; ///< Bits of Flag. Of a lone modifier: those held once it is down, or up.
};

} // namespace platform

#include "KeyEvent.h"

#include "QWPlatform/appkit/events/ModifierFlags.h"
#include "QWPlatform/appkit/events/NamedKeys.h"
#include "QWPlatform/devices/input/KeyboardState.h"
#include "QWPlatform/machine/SystemServices.h"

#include <QKeyEvent>

#include <algorithm>

namespace platform
{

namespace
{
struct ModifierKey
{
    Qt::Key key;
    quint32 flag; ///< 0: the key changes none of the bits.
};

constexpr std::array modifierKeys{
    ModifierKey{Qt::Key_Shift, KeyEvent::Shift},
    ModifierKey{Qt::Key_Meta, KeyEvent::Control},
    ModifierKey{Qt::Key_Alt, KeyEvent::Option},
    ModifierKey{Qt::Key_Control, KeyEvent::Command},
    ModifierKey{Qt::Key_Super_L, KeyEvent::Control},
    ModifierKey{Qt::Key_Super_R, KeyEvent::Control},
    ModifierKey{Qt::Key_AltGr, 0},
    ModifierKey{Qt::Key_CapsLock, 0},
    ModifierKey{Qt::Key_Hyper_L, 0},
    ModifierKey{Qt::Key_Hyper_R, 0},
};

/// Dead keys and the accents they would put on the next letter.
constexpr std::array deadKeys{
    NamedKey{0x0060, Qt::Key_Dead_Grave},      NamedKey{0x00b4, Qt::Key_Dead_Acute},
    NamedKey{0x005e, Qt::Key_Dead_Circumflex}, NamedKey{0x007e, Qt::Key_Dead_Tilde},
    NamedKey{0x00af, Qt::Key_Dead_Macron},     NamedKey{0x02d8, Qt::Key_Dead_Breve},
    NamedKey{0x02d9, Qt::Key_Dead_Abovedot},   NamedKey{0x00a8, Qt::Key_Dead_Diaeresis},
    NamedKey{0x02da, Qt::Key_Dead_Abovering},  NamedKey{0x02dd, Qt::Key_Dead_Doubleacute},
    NamedKey{0x02c7, Qt::Key_Dead_Caron},      NamedKey{0x00b8, Qt::Key_Dead_Cedilla},
    NamedKey{0x02db, Qt::Key_Dead_Ogonek},     NamedKey{0x037a, Qt::Key_Dead_Iota},
    NamedKey{0x002f, Qt::Key_Dead_Stroke},
};

constexpr int firstNamelessKey = 0x01000000; ///< Qt's codes from here on are no characters.
constexpr char16_t firstFunctionCharacter = 0xf700;
constexpr char16_t lastArrow = 0xf703;

const ModifierKey *modifierKey(int key)
{
    const auto found =
        std::find_if(modifierKeys.begin(), modifierKeys.end(), [=](const ModifierKey &m) { return m.key == key; });
    return found == modifierKeys.end() ? nullptr : &*found;
}

template <class Table>
char16_t characterIn(const Table &table, int key)
{
    const auto found = std::find_if(table.begin(), table.end(), [=](const NamedKey &k) { return k.key == key; });
    return found == table.end() ? u'\0' : found->character;
}

char16_t characterOfNamelessKey(int key)
{
    if (key >= Qt::Key_F1 && key <= Qt::Key_F35)
        return static_cast<char16_t>(firstFunctionKey + (key - Qt::Key_F1));
    const char16_t named = characterIn(namedKeys, key);
    return named ? named : characterIn(deadKeys, key);
}

/// Ctrl turns text into control characters, and Qt then prefers Latin keys; the machine knows what the layout says.
char16_t characterUnderCommand(const QKeyEvent &event)
{
    if (const char16_t character = SystemServices::current().keyboardState->characterOf(event))
        return character;
    const auto key = static_cast<char32_t>(event.key()); // of a letter: the capital
    const char32_t code = event.modifiers() & Qt::ShiftModifier ? key : QChar::toLower(key);
    return QChar::requiresSurrogates(code) ? QChar::highSurrogate(code) : static_cast<char16_t>(code);
}

char16_t characterOf(const QKeyEvent &event)
{
    if (event.key() >= firstNamelessKey)
        return characterOfNamelessKey(event.key());
    const QString text = event.text();
    if (!text.isEmpty() && text.at(0).unicode() >= ' ' && text.at(0).unicode() != 0x7f)
        return text.at(0).unicode();
    return characterUnderCommand(event);
}

quint32 flagsOf(char16_t character)
{
    if (character < firstFunctionCharacter || character > 0xf747)
        return 0;
    return character <= lastArrow ? KeyEvent::Function | KeyEvent::NumericPad : KeyEvent::Function;
}
} // namespace

KeyEvent::KeyEvent(const QEvent &event)
{
    if (!concerns(event))
        return;
    const auto &key = static_cast<const QKeyEvent &>(event);
    const bool isDown = key.type() != QEvent::KeyRelease;
    isRepeat = key.isAutoRepeat();
    modifierFlags = modifierFlagsOf(key.modifiers());
    if (const ModifierKey *const modifier = modifierKey(key.key())) {
        type = FlagsChanged;
        modifierFlags = isDown ? modifierFlags | modifier->flag : modifierFlags & ~modifier->flag;
        return;
    }
    type = isDown ? KeyDown : KeyUp;
    character = characterOf(key);
    modifierFlags |= flagsOf(character);
}

} // namespace platform

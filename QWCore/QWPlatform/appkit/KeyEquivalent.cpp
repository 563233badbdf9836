#include "KeyEquivalent.h"

#include "MenuItem.h"

#include <QKeyEvent>

#include <array>

namespace platform::KeyEquivalent
{

namespace
{
struct NamedKey
{
    char16_t character;
    Qt::Key key;
};

/// Characters of keys that type none, or a control character.
constexpr std::array namedKeys{
    NamedKey{0x0003, Qt::Key_Enter},    NamedKey{0x0008, Qt::Key_Backspace}, NamedKey{0x0009, Qt::Key_Tab},
    NamedKey{0x000a, Qt::Key_Return},   NamedKey{0x000d, Qt::Key_Return},    NamedKey{0x0019, Qt::Key_Backtab},
    NamedKey{0x001b, Qt::Key_Escape},   NamedKey{0x0020, Qt::Key_Space},     NamedKey{0x007f, Qt::Key_Backspace},
    NamedKey{0xf700, Qt::Key_Up},       NamedKey{0xf701, Qt::Key_Down},      NamedKey{0xf702, Qt::Key_Left},
    NamedKey{0xf703, Qt::Key_Right},    NamedKey{0xf727, Qt::Key_Insert},    NamedKey{0xf728, Qt::Key_Delete},
    NamedKey{0xf729, Qt::Key_Home},     NamedKey{0xf72b, Qt::Key_End},       NamedKey{0xf72c, Qt::Key_PageUp},
    NamedKey{0xf72d, Qt::Key_PageDown}, NamedKey{0xf72e, Qt::Key_Print},     NamedKey{0xf72f, Qt::Key_ScrollLock},
    NamedKey{0xf730, Qt::Key_Pause},    NamedKey{0xf735, Qt::Key_Menu},      NamedKey{0xf739, Qt::Key_Clear},
    NamedKey{0xf746, Qt::Key_Help},
};

constexpr char16_t firstFunctionKey = 0xf704; // F1; F35 is 0xf726
constexpr char16_t lastFunctionKey = 0xf726;

struct ModifierPair
{
    quint32 bit;
    Qt::KeyboardModifier modifier;
};

constexpr std::array modifierPairs{
    ModifierPair{MenuItem::Shift, Qt::ShiftModifier},
    ModifierPair{MenuItem::Control, Qt::MetaModifier},
    ModifierPair{MenuItem::Option, Qt::AltModifier},
    ModifierPair{MenuItem::Command, Qt::ControlModifier},
};

int keyFor(QChar character)
{
    const char16_t code = character.unicode();
    if (code >= firstFunctionKey && code <= lastFunctionKey)
        return Qt::Key_F1 + (code - firstFunctionKey);
    const auto named =
        std::find_if(namedKeys.begin(), namedKeys.end(), [&](const NamedKey &k) { return k.character == code; });
    return named == namedKeys.end() ? static_cast<int>(character.toUpper().unicode()) : static_cast<int>(named->key);
}

Qt::KeyboardModifiers modifiersFor(quint32 mask)
{
    Qt::KeyboardModifiers modifiers;
    for (const ModifierPair &pair : modifierPairs)
        modifiers.setFlag(pair.modifier, mask & pair.bit);
    return modifiers;
}

/// An upper-case letter stands for Shift and the letter.
quint32 withShiftOf(const QString &character, quint32 mask)
{
    const QChar c = character.at(0);
    return c.isLetter() && c != c.toLower() ? mask | MenuItem::Shift : mask;
}

/// Characters such as "?" are typed with Shift on one keyboard and without on the next.
bool shiftIsPartOfCharacter(QChar character)
{
    return !character.isLetter() && character.isPrint() && character != ' ' && character.unicode() < 0xf700;
}
} // namespace

QKeySequence sequence(const QString &character, quint32 modifierMask)
{
    if (character.isEmpty())
        return {};
    const auto modifiers = modifiersFor(withShiftOf(character, modifierMask));
    return QKeyCombination(modifiers, static_cast<Qt::Key>(keyFor(character.at(0))));
}

QString text(const QString &character, quint32 modifierMask)
{
    return sequence(character, modifierMask).toString(QKeySequence::NativeText);
}

bool matches(const QString &character, quint32 modifierMask, const QKeyEvent &event)
{
    if (character.isEmpty() || event.key() != keyFor(character.at(0)))
        return false;
    auto ignored = Qt::KeyboardModifiers(Qt::KeypadModifier | Qt::GroupSwitchModifier);
    ignored.setFlag(Qt::ShiftModifier, shiftIsPartOfCharacter(character.at(0)));
    const auto wanted = modifiersFor(withShiftOf(character, modifierMask));
    return (event.modifiers() & ~ignored) == (wanted & ~ignored);
}

} // namespace platform::KeyEquivalent

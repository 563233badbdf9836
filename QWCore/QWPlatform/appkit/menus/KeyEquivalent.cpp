#include "KeyEquivalent.h"

#include "QWPlatform/appkit/MenuItem.h"
#include "QWPlatform/appkit/events/NamedKeys.h"

#include <QKeyEvent>

#include <algorithm>
#include <array>

namespace platform::KeyEquivalent
{

namespace
{
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

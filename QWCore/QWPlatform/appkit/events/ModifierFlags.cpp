#include "ModifierFlags.h"

#include <array>

namespace platform
{

namespace
{
struct FlagPair
{
    Qt::KeyboardModifier modifier;
    ModifierFlag flag;
};

constexpr std::array flagPairs{
    FlagPair{Qt::ShiftModifier, ShiftFlag},       FlagPair{Qt::MetaModifier, ControlFlag},
    FlagPair{Qt::AltModifier, OptionFlag},        FlagPair{Qt::ControlModifier, CommandFlag},
    FlagPair{Qt::KeypadModifier, NumericPadFlag},
};
} // namespace

quint32 modifierFlagsOf(Qt::KeyboardModifiers modifiers)
{
    quint32 flags = 0;
    for (const FlagPair &pair : flagPairs)
        flags |= modifiers & pair.modifier ? quint32(pair.flag) : 0;
    return flags;
}

} // namespace platform

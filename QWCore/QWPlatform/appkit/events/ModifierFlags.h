#pragma once

#include <QWPlatform/qwplatform_private.h>

#include <Qt>

namespace platform
{

/// The platform's event modifier bits, as events carry and files store them.
enum ModifierFlag : quint32
{
    CapsLockFlag = 0x10000, ///< While locked; no modifier of Qt's.
    ShiftFlag = 0x20000,
    ControlFlag = 0x40000,     ///< Qt's MetaModifier.
    OptionFlag = 0x80000,      ///< Qt's AltModifier.
    CommandFlag = 0x100000,    ///< Qt's ControlModifier, the main shortcut modifier.
    NumericPadFlag = 0x200000, ///< A key of the numeric keypad.
    FiveModifierFlags = 0x1f0000
};

/// The bits of @p modifiers; any thread.
QWPLATFORM_SHARED_EXPORT quint32 modifierFlagsOf(Qt::KeyboardModifiers modifiers);

} // namespace platform

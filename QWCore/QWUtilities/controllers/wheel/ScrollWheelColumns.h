#pragma once

#include <QWPlatform/appkit/events/ModifierFlags.h>

#include <QString>

#include <array>

namespace qw
{

/// One column of the table of scroll wheel bindings.
struct ScrollWheelColumn
{
    enum Kind : quint8
    {
        PopUp,
        CheckBox
    };

    const char *identifier;
    const char *title; ///< In the header, the screen reader's name for the cells.
    Kind kind;
    quint32 modifier = 0;      ///< The bit that the check box stands for; 0 for none.
    bool takesTheRest = false; ///< Of the table's width.
};

/// In the order shown. The modifiers have the names of this desktop's keys.
inline constexpr std::array scrollWheelColumns{
    ScrollWheelColumn{"axis", "Axis", ScrollWheelColumn::PopUp},
    ScrollWheelColumn{"command", "Ctrl", ScrollWheelColumn::CheckBox, platform::CommandFlag},
    ScrollWheelColumn{"option", "Alt", ScrollWheelColumn::CheckBox, platform::OptionFlag},
    ScrollWheelColumn{"shift", "Shift", ScrollWheelColumn::CheckBox, platform::ShiftFlag},
    ScrollWheelColumn{"control", "Super", ScrollWheelColumn::CheckBox, platform::ControlFlag},
    ScrollWheelColumn{"caps lock", "Caps", ScrollWheelColumn::CheckBox, platform::CapsLockFlag},
    ScrollWheelColumn{"action", "Action", ScrollWheelColumn::PopUp, 0, true},
    ScrollWheelColumn{"reverse", "Reverse", ScrollWheelColumn::CheckBox},
};

} // namespace qw

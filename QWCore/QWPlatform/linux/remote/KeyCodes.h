#pragma once

#include "QWPlatform/devices/input/KeyboardState.h"

#include <QtGlobal>

#include <optional>
#include <span>

namespace platform
{

/// One physical key under its three names.
struct KeyCode
{
    quint8 code;  ///< In a KeyMap, 0 to 127.
    quint8 evdev; ///< The kernel's code.
    int key;      ///< Qt::Key of a US keyboard; 0 when it is the same as another key's.
};

/// The kernel's codes as X11 and Wayland number them start here.
constexpr unsigned xKeyOffset = 8;

/// All keys that have a code.
std::span<const KeyCode> keyCodes();

/// The code of the key with the native scan code @p scanCode (0: unknown), else of @p key of a US keyboard.
std::optional<quint8> codeOfKey(quint32 scanCode, int key);

void setKeyDown(KeyMap &map, quint8 code, bool down);

} // namespace platform

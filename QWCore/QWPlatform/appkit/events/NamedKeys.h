#pragma once

#include <qnamespace.h>

#include <array>

namespace platform
{

struct NamedKey
{
    char16_t character;
    Qt::Key key;
};

/// Characters of keys that type none, or a control character. A key that stands twice has the character of its first
/// row; the others are only read.
inline constexpr std::array namedKeys{
    NamedKey{0x0003, Qt::Key_Enter},    NamedKey{0x0009, Qt::Key_Tab},       NamedKey{0x000d, Qt::Key_Return},
    NamedKey{0x000a, Qt::Key_Return},   NamedKey{0x0019, Qt::Key_Backtab},   NamedKey{0x001b, Qt::Key_Escape},
    NamedKey{0x0020, Qt::Key_Space},    NamedKey{0x007f, Qt::Key_Backspace}, NamedKey{0x0008, Qt::Key_Backspace},
    NamedKey{0xf700, Qt::Key_Up},       NamedKey{0xf701, Qt::Key_Down},      NamedKey{0xf702, Qt::Key_Left},
    NamedKey{0xf703, Qt::Key_Right},    NamedKey{0xf727, Qt::Key_Insert},    NamedKey{0xf728, Qt::Key_Delete},
    NamedKey{0xf729, Qt::Key_Home},     NamedKey{0xf72b, Qt::Key_End},       NamedKey{0xf72c, Qt::Key_PageUp},
    NamedKey{0xf72d, Qt::Key_PageDown}, NamedKey{0xf72e, Qt::Key_Print},     NamedKey{0xf72f, Qt::Key_ScrollLock},
    NamedKey{0xf730, Qt::Key_Pause},    NamedKey{0xf731, Qt::Key_SysReq},    NamedKey{0xf735, Qt::Key_Menu},
    NamedKey{0xf739, Qt::Key_Clear},    NamedKey{0xf746, Qt::Key_Help},
};

inline constexpr char16_t firstFunctionKey = 0xf704; // F1; F35 is 0xf726
inline constexpr char16_t lastFunctionKey = 0xf726;

} // namespace platform

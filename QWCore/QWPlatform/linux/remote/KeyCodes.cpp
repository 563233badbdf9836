#include "KeyCodes.h"

#include <algorithm>
#include <linux/input-event-codes.h>
#include <qnamespace.h>

namespace platform
{

namespace
{
// The codes follow the positions of the first keyboards of their kind, not the alphabet. Each modifier key keeps its
// own place: KEY_LEFTMETA is the Command key's code, KEY_LEFTCTRL the Control key's, whatever the shortcuts use.
constexpr KeyCode table[] = {
    {0x00, KEY_A, Qt::Key_A},
    {0x01, KEY_S, Qt::Key_S},
    {0x02, KEY_D, Qt::Key_D},
    {0x03, KEY_F, Qt::Key_F},
    {0x04, KEY_H, Qt::Key_H},
    {0x05, KEY_G, Qt::Key_G},
    {0x06, KEY_Z, Qt::Key_Z},
    {0x07, KEY_X, Qt::Key_X},
    {0x08, KEY_C, Qt::Key_C},
    {0x09, KEY_V, Qt::Key_V},
    {0x0A, KEY_102ND, 0},
    {0x0B, KEY_B, Qt::Key_B},
    {0x0C, KEY_Q, Qt::Key_Q},
    {0x0D, KEY_W, Qt::Key_W},
    {0x0E, KEY_E, Qt::Key_E},
    {0x0F, KEY_R, Qt::Key_R},
    {0x10, KEY_Y, Qt::Key_Y},
    {0x11, KEY_T, Qt::Key_T},
    {0x12, KEY_1, Qt::Key_1},
    {0x13, KEY_2, Qt::Key_2},
    {0x14, KEY_3, Qt::Key_3},
    {0x15, KEY_4, Qt::Key_4},
    {0x16, KEY_6, Qt::Key_6},
    {0x17, KEY_5, Qt::Key_5},
    {0x18, KEY_EQUAL, Qt::Key_Equal},
    {0x19, KEY_9, Qt::Key_9},
    {0x1A, KEY_7, Qt::Key_7},
    {0x1B, KEY_MINUS, Qt::Key_Minus},
    {0x1C, KEY_8, Qt::Key_8},
    {0x1D, KEY_0, Qt::Key_0},
    {0x1E, KEY_RIGHTBRACE, Qt::Key_BracketRight},
    {0x1F, KEY_O, Qt::Key_O},
    {0x20, KEY_U, Qt::Key_U},
    {0x21, KEY_LEFTBRACE, Qt::Key_BracketLeft},
    {0x22, KEY_I, Qt::Key_I},
    {0x23, KEY_P, Qt::Key_P},
    {0x24, KEY_ENTER, Qt::Key_Return},
    {0x25, KEY_L, Qt::Key_L},
    {0x26, KEY_J, Qt::Key_J},
    {0x27, KEY_APOSTROPHE, Qt::Key_Apostrophe},
    {0x28, KEY_K, Qt::Key_K},
    {0x29, KEY_SEMICOLON, Qt::Key_Semicolon},
    {0x2A, KEY_BACKSLASH, Qt::Key_Backslash},
    {0x2B, KEY_COMMA, Qt::Key_Comma},
    {0x2C, KEY_SLASH, Qt::Key_Slash},
    {0x2D, KEY_N, Qt::Key_N},
    {0x2E, KEY_M, Qt::Key_M},
    {0x2F, KEY_DOT, Qt::Key_Period},
    {0x30, KEY_TAB, Qt::Key_Tab},
    {0x31, KEY_SPACE, Qt::Key_Space},
    {0x32, KEY_GRAVE, Qt::Key_QuoteLeft},
    {0x33, KEY_BACKSPACE, Qt::Key_Backspace},
    {0x35, KEY_ESC, Qt::Key_Escape},
    {0x36, KEY_RIGHTMETA, 0},
    {0x37, KEY_LEFTMETA, Qt::Key_Meta},
    {0x38, KEY_LEFTSHIFT, Qt::Key_Shift},
    {0x39, KEY_CAPSLOCK, Qt::Key_CapsLock},
    {0x3A, KEY_LEFTALT, Qt::Key_Alt},
    {0x3B, KEY_LEFTCTRL, Qt::Key_Control},
    {0x3C, KEY_RIGHTSHIFT, 0},
    {0x3D, KEY_RIGHTALT, Qt::Key_AltGr},
    {0x3E, KEY_RIGHTCTRL, 0},
    {0x40, KEY_F17, Qt::Key_F17},
    {0x41, KEY_KPDOT, 0},
    {0x43, KEY_KPASTERISK, Qt::Key_Asterisk},
    {0x45, KEY_KPPLUS, Qt::Key_Plus},
    {0x47, KEY_NUMLOCK, Qt::Key_NumLock},
    {0x48, KEY_VOLUMEUP, Qt::Key_VolumeUp},
    {0x49, KEY_VOLUMEDOWN, Qt::Key_VolumeDown},
    {0x4A, KEY_MUTE, Qt::Key_VolumeMute},
    {0x4B, KEY_KPSLASH, 0},
    {0x4C, KEY_KPENTER, Qt::Key_Enter},
    {0x4E, KEY_KPMINUS, 0},
    {0x4F, KEY_F18, Qt::Key_F18},
    {0x50, KEY_F19, Qt::Key_F19},
    {0x51, KEY_KPEQUAL, 0},
    {0x52, KEY_KP0, 0},
    {0x53, KEY_KP1, 0},
    {0x54, KEY_KP2, 0},
    {0x55, KEY_KP3, 0},
    {0x56, KEY_KP4, 0},
    {0x57, KEY_KP5, 0},
    {0x58, KEY_KP6, 0},
    {0x59, KEY_KP7, 0},
    {0x5A, KEY_F20, Qt::Key_F20},
    {0x5B, KEY_KP8, 0},
    {0x5C, KEY_KP9, 0},
    {0x5D, KEY_YEN, Qt::Key_yen},
    {0x5E, KEY_RO, 0},
    {0x5F, KEY_KPCOMMA, 0},
    {0x60, KEY_F5, Qt::Key_F5},
    {0x61, KEY_F6, Qt::Key_F6},
    {0x62, KEY_F7, Qt::Key_F7},
    {0x63, KEY_F3, Qt::Key_F3},
    {0x64, KEY_F8, Qt::Key_F8},
    {0x65, KEY_F9, Qt::Key_F9},
    {0x66, KEY_MUHENKAN, Qt::Key_Muhenkan},
    {0x67, KEY_F11, Qt::Key_F11},
    {0x68, KEY_HENKAN, Qt::Key_Henkan},
    {0x69, KEY_F13, Qt::Key_F13},
    {0x6A, KEY_F16, Qt::Key_F16},
    {0x6B, KEY_F14, Qt::Key_F14},
    {0x6D, KEY_F10, Qt::Key_F10},
    {0x6E, KEY_COMPOSE, Qt::Key_Menu},
    {0x6F, KEY_F12, Qt::Key_F12},
    {0x71, KEY_F15, Qt::Key_F15},
    {0x72, KEY_INSERT, Qt::Key_Insert},
    {0x73, KEY_HOME, Qt::Key_Home},
    {0x74, KEY_PAGEUP, Qt::Key_PageUp},
    {0x75, KEY_DELETE, Qt::Key_Delete},
    {0x76, KEY_F4, Qt::Key_F4},
    {0x77, KEY_END, Qt::Key_End},
    {0x78, KEY_F2, Qt::Key_F2},
    {0x79, KEY_PAGEDOWN, Qt::Key_PageDown},
    {0x7A, KEY_F1, Qt::Key_F1},
    {0x7B, KEY_LEFT, Qt::Key_Left},
    {0x7C, KEY_RIGHT, Qt::Key_Right},
    {0x7D, KEY_DOWN, Qt::Key_Down},
    {0x7E, KEY_UP, Qt::Key_Up},
};

template <class Matches>
std::optional<quint8> codeWhere(Matches matches)
{
    const auto found = std::find_if(std::begin(table), std::end(table), matches);
    return found == std::end(table) ? std::nullopt : std::optional(found->code);
}
} // namespace

std::span<const KeyCode> keyCodes()
{
    return table;
}

std::optional<quint8> codeOfKey(quint32 scanCode, int key)
{
    if (scanCode > xKeyOffset)
        return codeWhere([=](const KeyCode &entry) { return entry.evdev + xKeyOffset == scanCode; });
    return codeWhere([=](const KeyCode &entry) { return entry.key != 0 && entry.key == key; });
}

void setKeyDown(KeyMap &map, quint8 code, bool down)
{
    const auto bit = static_cast<quint8>(1u << (code % 8));
    auto &byte = map[code / 8];
    byte = static_cast<quint8>(down ? byte | bit : byte & ~bit);
}

} // namespace platform

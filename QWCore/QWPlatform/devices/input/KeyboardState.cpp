#include "KeyboardState.h"

namespace platform
{

KeyboardState::~KeyboardState() = default;

void KeyboardState::noteKeyEvent(const QKeyEvent &) {}

bool KeyboardState::isCapsLockOn()
{
    return false;
}

char16_t KeyboardState::characterOf(const QKeyEvent &)
{
    return 0;
}

} // namespace platform

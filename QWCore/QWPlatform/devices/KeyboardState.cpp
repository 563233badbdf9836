#include "KeyboardState.h"

namespace platform
{

KeyboardState::~KeyboardState() = default;

void KeyboardState::noteKeyEvent(const QKeyEvent &) {}

char16_t KeyboardState::characterOf(const QKeyEvent &)
{
    return 0;
}

} // namespace platform

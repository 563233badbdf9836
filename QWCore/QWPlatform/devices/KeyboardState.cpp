#include "KeyboardState.h"

namespace platform
{

KeyboardState::~KeyboardState() = default;

} // namespace platform

#include "Clock.h"

namespace platform
{

Clock::~Clock() = default;

} // namespace platform

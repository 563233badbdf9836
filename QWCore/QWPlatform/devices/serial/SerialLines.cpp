#include "SerialLines.h"

namespace platform
{

SerialLines::~SerialLines() = default;

} // namespace platform

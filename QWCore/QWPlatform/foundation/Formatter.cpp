#include "Formatter.h"

namespace platform
{

Formatter::~Formatter() = default;

} // namespace platform

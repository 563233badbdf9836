#include "ChildProcesses.h"

namespace platform
{

ChildProcesses::~ChildProcesses() = default;

} // namespace platform

#include "Workspace.h"

namespace platform
{

Workspace::~Workspace() = default;

} // namespace platform

#include "ComponentRegistry.h"

namespace platform
{

ComponentRegistry::~ComponentRegistry() = default;

} // namespace platform

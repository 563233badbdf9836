#include "InstanceLink.h"

namespace platform
{

InstanceLink::~InstanceLink() = default;

} // namespace platform

#include "SerialRegistry.h"

namespace platform
{

SerialRegistryClient::~SerialRegistryClient() = default;

SerialRegistry::~SerialRegistry() = default;

} // namespace platform

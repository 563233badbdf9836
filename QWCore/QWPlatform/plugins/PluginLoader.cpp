#include "PluginLoader.h"

namespace platform
{

PluginLoader::~PluginLoader() = default;

} // namespace platform

#include "UrlLoader.h"

namespace platform
{

UrlLoader::~UrlLoader() = default;

} // namespace platform

#include "NetServices.h"

#include "NetServiceBrowser.h"

namespace platform
{

NetServices::~NetServices() = default;

} // namespace platform

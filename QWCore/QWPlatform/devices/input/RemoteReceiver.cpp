#include "RemoteReceiver.h"

namespace platform
{

HidQueue::~HidQueue() = default;
HidInterface::~HidInterface() = default;
HidPlugin::~HidPlugin() = default;
RemoteReceiver::~RemoteReceiver() = default;

} // namespace platform

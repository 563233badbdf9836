#include "AlertResponder.h"

namespace platform
{

namespace
{
AlertResponder current;
}

void setAlertResponder(AlertResponder responder)
{
    current = std::move(responder);
}

const AlertResponder &alertResponder()
{
    return current;
}

} // namespace platform

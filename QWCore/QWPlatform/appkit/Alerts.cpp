#include "Alerts.h"

#include "QWPlatform/System.h"

namespace platform
{

Alerts::~Alerts() = default;

int runAlert(const Alert &alert)
{
    return System::current().alerts().run(alert);
}

} // namespace platform

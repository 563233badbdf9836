#pragma once

#include "QWPlatform/appkit/Alerts.h"

#include <QWPlatform/qwplatform_private.h>

namespace platform
{

/// Alerts as panels of our own. Without an application object they go to standard error and choose the default button.
class QWPLATFORM_TEST_EXPORT LinuxAlerts : public Alerts
{
public:
    int run(const Alert &alert) override;
};

} // namespace platform

#pragma once

#include "QWPlatform/appkit/Alerts.h"

#include <QWPlatform/qwplatform_private.h>

#include <functional>
#include <optional>

class QWidget;

namespace platform
{

/// Sees each real alert when its panel is on the screen, and may choose a button in the user's place; no index leaves
/// it to the user. For a guided tour, which pictures some alerts and answers others.
using AlertResponder = std::function<std::optional<int>(const Alert &alert, QWidget *panel)>;

/// Main thread; an empty one ends it.
QWPLATFORM_SHARED_EXPORT void setAlertResponder(AlertResponder responder);
QWPLATFORM_SHARED_EXPORT const AlertResponder &alertResponder();

} // namespace platform

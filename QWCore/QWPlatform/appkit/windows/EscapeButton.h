#pragma once

#include "QWPlatform/appkit/Alerts.h"

#include <optional>

namespace platform
{

/// What Escape and closing choose: index of the button named "Cancel", in the user's language or in English, or the
/// only one. None: the user has to choose.
std::optional<int> escapeButton(const Alert &alert);

} // namespace platform

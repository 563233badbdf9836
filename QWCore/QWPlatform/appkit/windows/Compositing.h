#pragma once

#include <QWPlatform/qwplatform_export.h>

namespace platform
{

/// True where translucent windows show what is behind them; false on an X display without compositor, where they are
/// black instead. May change at any time. Main thread.
QWPLATFORM_EXPORT bool isCompositing();

} // namespace platform

#pragma once

#include <QWPlatform/qwplatform_private.h>

namespace platform
{

/// True where translucent windows show what is behind them; false on an X display without compositor, where they are
/// black instead. May change at any time. Main thread.
QWPLATFORM_SHARED_EXPORT bool isCompositing();

} // namespace platform

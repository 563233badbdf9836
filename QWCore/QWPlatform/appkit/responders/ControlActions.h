#pragma once

#include "QWPlatform/appkit/Selector.h"

#include <QWPlatform/qwplatform_private.h>

namespace platform
{

/// Makes @p control send @p action to @p receiver whenever the user operates it (a click, Return in a field or the end
/// of an edit that changed it, another choice, a value); false for a class of control that sends none.
QWPLATFORM_TEST_EXPORT bool connectControl(QObject &control, const Selector &action, QObject &receiver);

} // namespace platform

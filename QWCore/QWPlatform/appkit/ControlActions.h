#pragma once

#include <QWPlatform/appkit/Selector.h>

namespace platform
{

/// Makes @p control send @p action to @p receiver whenever the user operates it (a click, Return in a field, another
/// choice, a value); false for a class of control that sends none.
bool connectControl(QObject &control, const Selector &action, QObject &receiver);

} // namespace platform

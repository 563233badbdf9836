#pragma once

#include <QtGlobal>

namespace platform
{

class System;

/// The System of the innermost SystemScope, or null. Main thread. A variable, since every event asks for it.
inline Q_DECL_HIDDEN System *innermostSystem = nullptr;

} // namespace platform

#pragma once

#include "WindowStep.h"

#include <span>

namespace demo
{

/// The scroll wheel's bindings and the panes of the preferences, in order.
std::span<const WindowStep::Window> controllerScenes();

} // namespace demo

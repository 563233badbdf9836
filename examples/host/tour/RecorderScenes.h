#pragma once

#include "WindowStep.h"

#include <span>

namespace demo
{

/// The browser of recorders in the states worth seeing, in order; each begins where the one before it ended. Its
/// recorder is simulated, and listed in the environment instead of announced, so that the pictures need no network.
std::span<const WindowStep::Window> recorderScenes();

} // namespace demo

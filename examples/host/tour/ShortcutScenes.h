#pragma once

#include "WindowStep.h"

#include <span>

namespace demo
{

/// The keyboard-shortcut editor in the states worth seeing, in order; each begins where the one before it ended.
std::span<const WindowStep::Window> shortcutScenes();

} // namespace demo

#pragma once

#include "WindowStep.h"

namespace demo
{

/// A simulated grid, plugged in where this host looks for devices, in use by it and with a picture on its lights. It
/// stays plugged in until unplugGrid().
WindowStep::Window gridScene();

void unplugGrid();

} // namespace demo

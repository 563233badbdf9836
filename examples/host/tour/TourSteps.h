#pragma once

#include "TourStep.h"

#include <memory>
#include <vector>

namespace demo
{

class Tour;

/// The tour, in order. A new window or state worth seeing gets its line here.
std::vector<std::unique_ptr<TourStep>> makeTourSteps(const Tour &tour);

} // namespace demo

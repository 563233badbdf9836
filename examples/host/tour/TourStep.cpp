#include "TourStep.h"

namespace demo
{

TourStep::~TourStep() = default;

} // namespace demo

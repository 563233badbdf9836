#include "SplashStep.h"

#include "Tour.h"

namespace demo
{

SplashStep::SplashStep(const Tour &tour)
    : m_tour(tour)
{
}

std::optional<QImage> SplashStep::picture(DemoApplication &)
{
    return m_tour.splashPicture();
}

} // namespace demo

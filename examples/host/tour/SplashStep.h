#pragma once

#include "TourStep.h"

namespace demo
{

class Tour;

/// The splash screen of the launch, which the tour pictured when it showed.
class SplashStep : public TourStep
{
public:
    explicit SplashStep(const Tour &tour);

    QString name() const override { return QStringLiteral("splash"); }
    std::optional<QImage> picture(DemoApplication &application) override;

private:
    const Tour &m_tour;
};

} // namespace demo

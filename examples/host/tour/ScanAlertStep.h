#pragma once

#include "TourStep.h"

namespace demo
{

/// The alert of a plug-in that fails its trial, above the splash screen. A bundle without a binary is installed for the
/// time of one scan; a second scan forgets it again.
class ScanAlertStep : public TourStep
{
public:
    QString name() const override { return QStringLiteral("scan-alert"); }
    std::optional<QImage> picture(DemoApplication &application) override;
    bool takesAlert(const platform::Alert &alert, QWidget &panel) override;

private:
    std::optional<QImage> m_picture;
    bool m_scanned = false;
};

} // namespace demo

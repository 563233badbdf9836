#pragma once

#include "SettingsPane.h"

namespace demo
{

/// Which controllers steer the host, with a look at each of them.
class ControllersPane : public SettingsPane
{
    Q_OBJECT

public:
    using SettingsPane::SettingsPane;

    void updateControls() override;

protected:
    void settingChanged(const QString &key, const QVariant &value) override;

private:
    void _enableMonitors();
};

} // namespace demo

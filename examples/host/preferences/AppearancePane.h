#pragma once

#include "SettingsPane.h"

namespace demo
{

/// How the windows look: changes show at once, through the same actions as the View menu's.
class AppearancePane : public SettingsPane
{
    Q_OBJECT

public:
    using SettingsPane::SettingsPane;

protected:
    void settingChanged(const QString &key, const QVariant &value) override;
};

} // namespace demo

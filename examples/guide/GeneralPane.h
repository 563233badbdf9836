#pragma once

#include <QWUtilities/shell/QWPreferencesPane.h>

class GeneralPane : public QWPreferencesPane
{
    Q_OBJECT

public:
    using QWPreferencesPane::QWPreferencesPane;

    QString identifier() const override { return "general"; }
    QString title() const override { return "General"; }
    void updateControls() override;
    void itemChanged(QObject *sender) override;
};

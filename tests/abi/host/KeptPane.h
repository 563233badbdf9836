#pragma once

#include <QWUtilities/shell/QWPreferencesPane.h>

class KeptPane : public QWPreferencesPane
{
    Q_OBJECT

public:
    using QWPreferencesPane::QWPreferencesPane;

    QString identifier() const override { return "general"; }
    QString title() const override { return "General"; }
    void updateControls() override { ++updates; }
    void paneDidBecomeFront() override { ++fronts; }

    int updates = 0;
    int fronts = 0;
};

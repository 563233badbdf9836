#pragma once

#include <QWPlatform/appkit/Panel.h>

/// A floating panel that comes back where the user left it.
class MeterPanel : public platform::Panel
{
    Q_OBJECT

public:
    MeterPanel();

    void open();

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void _keepFrame();
};

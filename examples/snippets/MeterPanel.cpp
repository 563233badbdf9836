#include "MeterPanel.h"

#include <QWBase/QWButton.h>
#include <QWBase/QWGradient.h>
#include <QWPlatform/System.h>
#include <QWPlatform/appkit/TintedIcon.h>
#include <QWPlatform/appkit/WindowFrame.h>
#include <QWPlatform/foundation/Bundle.h>
#include <QWPlatform/foundation/Localization.h>
#include <QWPlatform/foundation/TextForms.h>
#include <QWPlatform/foundation/UserDefaults.h>

#include <QPainter>

using platform::System;

MeterPanel::MeterPanel()
{
    setWindowTitle(platform::localized("Meter"));
    setFloating(true); // above the windows of the application; shortcuts go on working
    auto *clear = new QWButton(platform::localized("Clear"), this);
    clear->setBezelStyle(QWButton::QuietDark);
    clear->setIcon(platform::tintedIcon(System::current().mainBundle().pathForResource("clear", "svg")));
    connect(this, &Panel::willClose, this, &MeterPanel::_keepFrame);
}

void MeterPanel::open()
{
    const QString kept = System::current().userDefaults().string("Meter Frame");
    if (kept.isEmpty())
        platform::centerWindow(*this, size());
    else
        setGeometry(platform::constrainedToScreen(platform::TextForms::wholeRectFromString(kept)));
    platform::makeKeyAndOrderFront(*this);
}

void MeterPanel::_keepFrame()
{
    System::current().userDefaults().setObject("Meter Frame", platform::stringFromFrame(*this));
}

void MeterPanel::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    QWGradient(QColor("#1b1c1e"), QColor("#3a3b40")).drawInRectAngle(painter, rect(), 90); // dark below
}

#include "SplashScreenExtension.h"

#include "QWUtilities/shell/QWSplashScreen.h"

#include <QWBase/QWApplication.h>

namespace qw
{

void SplashScreenExtension::willFinishLaunching(QWApplication &application)
{
    if (application.usesSplashScreen())
        QWSplashScreen::splashScreen().open();
}

void SplashScreenExtension::didFinishLaunching(QWApplication &application)
{
    if (application.usesSplashScreen())
        QWSplashScreen::splashScreen().close();
}

} // namespace qw

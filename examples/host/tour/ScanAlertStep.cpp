#include "ScanAlertStep.h"

#include "../app/DemoApplication.h"
#include "ScreenPicture.h"

#include <QWPlatform/System.h>
#include <QWPlatform/appkit/Alerts.h>
#include <QWPlatform/foundation/Locations.h>
#include <QWPlatform/foundation/PropertyList.h>
#include <QWUtilities/shell/QWSplashScreen.h>

#include <QDir>
#include <QFile>

namespace demo
{

namespace
{
constexpr auto brokenName = "Cracked Bell";

QString brokenBundle()
{
    const QString path = QStringLiteral("~/Library/Audio/Plug-Ins/VST/%1.vst").arg(brokenName);
    return platform::System::current().locations().mapped(path);
}

void installBrokenBundle()
{
    QDir().mkpath(brokenBundle() + "/Contents");
    QFile info(brokenBundle() + "/Contents/Info.plist");
    if (info.open(QIODevice::WriteOnly))
        info.write(
            platform::PropertyList::toXml(QVariantMap{{"CFBundleIdentifier", "com.quorwell.tine.cracked-bell"}}));
}
} // namespace

std::optional<QImage> ScanAlertStep::picture(DemoApplication &application)
{
    if (!m_scanned && !QWSplashScreen::isVisible()) { // the one of the launch has faded
        m_scanned = true;
        installBrokenBundle();
        application.scanPlugIns();
        QDir(brokenBundle()).removeRecursively();
        application.scanPlugIns();
    }
    return m_picture;
}

bool ScanAlertStep::takesAlert(const platform::Alert &alert, QWidget &panel)
{
    if (!alert.messageText.contains(brokenName))
        return false;
    m_picture = ScreenPicture::of({QWSplashScreen::splashScreen().window(), &panel});
    return true;
}

} // namespace demo

#include "ShellInterface.h"

#include "ElidedLabel.h"
#include "QWAboutPanelContentView.h"
#include "QWSplashScreenContentView.h"
#include "WaveformOrnament.h"

#include <QWBase/QWApplication.h>
#include <QWBase/QWButton.h>
#include <QWPlatform/System.h>
#include <QWPlatform/appkit/InterfaceFile.h>

namespace qw
{

namespace
{
bool registerClasses()
{
    using platform::InterfaceFile;
    InterfaceFile::registerClass<ElidedLabel>("ElidedLabel");
    InterfaceFile::registerClass<WaveformOrnament>("WaveformOrnament");
    InterfaceFile::registerClass<QWButton>("QWButton");
    InterfaceFile::registerClass<QWSplashScreenContentView>("QWSplashScreenContentView");
    InterfaceFile::registerClass<QWAboutPanelContentView>("QWAboutPanelContentView");
    return true;
}
} // namespace

platform::Bundle shellBundle()
{
    [[maybe_unused]] static const bool registered = registerClasses();
    return platform::Bundle::forAddress(reinterpret_cast<const void *>(&registerClasses));
}

QString applicationName()
{
    if (const QWApplication *application = QWApplication::sharedApplication())
        return application->name();
    return platform::System::current().mainBundle().objectForInfoDictionaryKey("CFBundleName").toString();
}

} // namespace qw

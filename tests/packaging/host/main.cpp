#include <QWBase/QWApplication.h>
#include <QWBase/QWApplicationLog.h>
#include <QWBase/QWApplicationLogContext.h>
#include <QWBase/QWButton.h>
#include <QWBase/QWCatalogRecord.h>
#include <QWBase/QWComponentDescription.h>
#include <QWBase/QWError.h>
#include <QWBase/QWEvents.h>
#include <QWBase/QWFile.h>
#include <QWBase/QWGradient.h>
#include <QWBase/QWGradientStop.h>
#include <QWBase/QWMenuSorting.h>
#include <QWBase/QWVSTDescription.h>
#include <QWBase/tables/QWBooleanFormatter.h>
#include <QWBase/tables/QWChannelsFormatter.h>
#include <QWBase/tables/QWFileSizeFormatter.h>
#include <QWBase/tables/QWIconTextCell.h>
#include <QWBase/tables/QWTableColumn.h>
#include <QWBase/tables/QWTableView.h>
#include <QWBase/tables/QWTimeFormatter.h>
#include <QWPlatform/System.h>
#include <QWPlatform/appkit/Alerts.h>
#include <QWPlatform/appkit/FilePanels.h>
#include <QWPlatform/appkit/InterfaceFile.h>
#include <QWPlatform/appkit/KeyEvent.h>
#include <QWPlatform/appkit/MenuItem.h>
#include <QWPlatform/appkit/Panel.h>
#include <QWPlatform/appkit/ResponderChain.h>
#include <QWPlatform/appkit/ScrollEvent.h>
#include <QWPlatform/appkit/Selector.h>
#include <QWPlatform/appkit/Theme.h>
#include <QWPlatform/appkit/TintedIcon.h>
#include <QWPlatform/appkit/WebView.h>
#include <QWPlatform/appkit/WindowFrame.h>
#include <QWPlatform/appkit/Workspace.h>
#include <QWPlatform/foundation/BackgroundWork.h>
#include <QWPlatform/foundation/Bundle.h>
#include <QWPlatform/foundation/Clock.h>
#include <QWPlatform/foundation/DateFormatter.h>
#include <QWPlatform/foundation/Formatter.h>
#include <QWPlatform/foundation/Localization.h>
#include <QWPlatform/foundation/Locations.h>
#include <QWPlatform/foundation/PropertyList.h>
#include <QWPlatform/foundation/TextForms.h>
#include <QWPlatform/foundation/UserDefaults.h>
#include <QWPlatform/network/UrlLoader.h>
#include <QWPlatform/plugins/AudioComponent.h>
#include <QWPlatform/plugins/AudioPlugin.h>
#include <QWPlatform/plugins/PluginLoader.h>
#include <QWUtilities/controllers/QWGridPosition.h>
#include <QWUtilities/controllers/QWMonomeRemote.h>
#include <QWUtilities/controllers/QWMonomeRemoteObserver.h>
#include <QWUtilities/controllers/QWRemoteControl.h>
#include <QWUtilities/controllers/QWRemoteControlListener.h>
#include <QWUtilities/controllers/QWScrollWheelManager.h>
#include <QWUtilities/plugins/QWAUDescription.h>
#include <QWUtilities/plugins/QWAUManager.h>
#include <QWUtilities/plugins/QWVSTManager.h>
#include <QWUtilities/plugins/QWVSTWrapping.h>
#include <QWUtilities/recorder/QWVeskBrowser.h>
#include <QWUtilities/shell/QWAboutPanel.h>
#include <QWUtilities/shell/QWManual.h>
#include <QWUtilities/shell/QWPreferencesPane.h>
#include <QWUtilities/shell/QWPreferencesPanel.h>
#include <QWUtilities/shell/QWSplashScreen.h>
#include <QWUtilities/shortcuts/QWKeyboardShortcuts.h>
#include <QWUtilities/shortcuts/QWShortcut.h>
#include <QWUtilities/shortcuts/QWShortcutGroup.h>
#include <QWUtilities/shortcuts/QWShortcutKey.h>

#include <cstdio>
#include <typeinfo>

namespace
{
/// Keeps an address from being optimised away, so that the linker must find what stands there.
template <class T>
bool found(T address)
{
    T volatile kept = address;
    return kept != nullptr;
}

bool base()
{
    const QWApplicationLogContext context{.domain = "Everything"};
    const QWGradientStop stop{.color = Qt::black};
    const QWError error("No sound");
    return !context.domain.isEmpty() && stop.color.isValid() && error.isSet() && found(&typeid(QWApplication)) &&
           found(&QWApplication::sharedApplication) && found(&QWApplicationLog::sharedLog) &&
           found(&QWButton::setBezelStyle) && found(&typeid(QWCatalogRecord)) && found(&QWCatalogRecord::setIgnore) &&
           found(&QWComponentDescription::isEffect) &&
           qHash(QWComponentDescription()) == qHash(QWComponentDescription()) && found(&QWError::alert) &&
           found(&QWEvents::isArrowKeyDownEvent) && found(&QWFile::conformPath) && found(&QWGradient::colorAt) &&
           found(&QWMenuSorting::compareTitles) && found(&QWVSTDescription::descriptionWithPath);
}

bool tables()
{
    const QWTableColumn column{.identifier = "title"};
    return column.alignment == Qt::AlignLeft && found(&QWTableView::columnState) && found(&typeid(QWTableView)) &&
           found(&QWIconTextCell::setImage) && found(&QWTimeFormatter::setTimeFormat) &&
           found(&typeid(QWFileSizeFormatter)) && found(&typeid(QWChannelsFormatter)) &&
           found(&typeid(QWBooleanFormatter)) && found(&typeid(platform::Formatter)) &&
           found(&typeid(platform::DateFormatter));
}

bool appkit()
{
    using namespace platform;
    const KeyEvent key;
    const ScrollEvent scroll;
    return key.type == KeyEvent::Other && scroll.deltaX == 0 && found(&typeid(Alerts)) && found(&runAlert) &&
           found(&typeid(FilePanels)) && found(&InterfaceFile::isComplete) && found(&MenuItem::validate) &&
           found(&addMenuItem) && found(&Panel::isFloating) && found(&isPanel) && found(&sendAction) &&
           found(&Selector::argumentCount) && found(&respondsTo) && found(&applyTheme) && found(&tintedIcon) &&
           found(&typeid(WebView)) && found(&WebView::loadFinished) && found(&typeid(WebViews)) &&
           found(&constrainToScreen) && found(&typeid(Workspace)) && found(&openUrlOrTell);
}

bool rest()
{
    using namespace platform;
    const AudioComponent component{.type = fourCharCode("aufx")};
    return component.type && found(&System::current) && found(&System::endWork) && found(&BackgroundWork::running) &&
           found(&Bundle::forExecutable) && found(&typeid(Clock)) && found(&localized) && found(&Locations::mapped) &&
           found(&PropertyList::fromFile) && found(&TextForms::stringFromRect) && found(&UserDefaults::synchronize) &&
           found(&typeid(UrlLoader)) && found(&typeid(AudioPlugin)) && found(&AudioPlugin::category) &&
           found(&typeid(PluginLoader));
}

bool product()
{
    const QWGridPosition position;
    QWMonomeRemoteObserver observer;
    QWRemoteControlListener listener;
    return position.x == 0 && found(&observer) && found(&listener) && found(&QWMonomeRemote::remote) &&
           found(&QWRemoteControl::remoteControl) && found(&QWScrollWheelManager::loadActions) &&
           found(&QWAUDescription::description) && found(&QWAUManager::validate) && found(&QWVSTManager::validate) &&
           found(&QWVSTWrapping::sharedInstance) && found(&QWAboutPanel::open) && found(&QWVeskBrowser::openWindow) &&
           found(&QWManual::openManual) && found(&QWPreferencesPane::paneSize) && found(&QWPreferencesPanel::update) &&
           found(&QWSplashScreen::setAction) && found(&QWKeyboardShortcuts::togglePanel) &&
           found(&QWShortcut::refreshMenuItem) && found(&QWShortcutGroup::refreshMenu) &&
           found(&QWShortcutKey::displayString);
}
} // namespace

int main()
{
    const bool all = base() && tables() && appkit() && rest() && product();
    std::puts(all ? "everything" : "something is missing");
    return all ? 0 : 1;
}

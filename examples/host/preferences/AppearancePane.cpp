#include "AppearancePane.h"

#include "../app/HostSettings.h"
#include "../app/MainWindow.h"

#include <QWPlatform/appkit/ResponderChain.h>

#include <QApplication>

namespace demo
{

namespace
{
MainWindow *mainWindow()
{
    for (QWidget *window : QApplication::topLevelWidgets()) {
        if (auto *found = qobject_cast<MainWindow *>(window))
            return found;
    }
    return nullptr;
}
} // namespace

void AppearancePane::settingChanged(const QString &key, const QVariant &value)
{
    MainWindow *const window = mainWindow();
    if (key == HostSettings::rulerKey && window) {
        window->showRuler(value.toBool());
    } else if (key == HostSettings::chainKey && window) {
        window->showChain(value.toBool());
    } else if (key == "Theme") {
        QObject choice; // as the View menu's item does
        choice.setProperty("tag", value);
        platform::sendAction("chooseTheme:", nullptr, &choice);
    }
}

} // namespace demo

#include "ShortcutFilter.h"

#include <QWBase/QWEvents.h>
#include <QWPlatform/appkit/Panel.h>
#include <QWPlatform/appkit/ResponderChain.h>
#include <QWPlatform/appkit/responders/FirstResponder.h>

#include <QApplication>

namespace qw
{

using platform::FirstResponder;

namespace
{
/// Save and open panels are panels that never float.
bool keepsItsKeys(const QWidget &window)
{
    return platform::isFilePanel(&window) || (platform::isPanel(&window) && !platform::isFloatingPanel(&window));
}

bool isOwnKeyOf(FirstResponder responder, const QEvent &event)
{
    switch (responder) {
    case FirstResponder::Text:
        return true;
    case FirstResponder::Outline:
        return QWEvents::isArrowKeyDownEvent(event);
    case FirstResponder::Table:
        return QWEvents::isVerticalArrowKeyDownEvent(event);
    case FirstResponder::Other:
        break;
    }
    return false;
}
} // namespace

bool takesItsOrdinaryWay(const QEvent &event, const QWidget *setShortcutPanel)
{
    if (QApplication::activePopupWidget())
        return true;
    const QWidget *const key = platform::keyWindow();
    if (key && key != setShortcutPanel && keepsItsKeys(*key))
        return true;
    return isOwnKeyOf(platform::firstResponder(), event);
}

} // namespace qw

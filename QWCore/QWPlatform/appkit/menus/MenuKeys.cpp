#include "MenuKeys.h"

#include "MenuTitleFlash.h"
#include "QWPlatform/appkit/MenuItem.h"
#include "QWPlatform/appkit/ResponderChain.h"
#include "QWPlatform/appkit/responders/FirstResponder.h"
#include "QWPlatform/appkit/responders/WidgetTree.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMenu>
#include <QMenuBar>

#include <algorithm>

namespace platform
{

namespace
{
/// Whether a modal panel, or a sheet on the window, keeps the user from it.
bool isBlocked(const QWidget &window)
{
    const QWidgetList panels = QApplication::topLevelWidgets();
    return std::any_of(panels.begin(), panels.end(), [&](const QWidget *panel) {
        const bool reaches = panel->windowModality() == Qt::ApplicationModal || isWithin(panel, window);
        return panel->isVisible() && panel->isModal() && reaches && !isWithin(&window, *panel);
    });
}

/// @p menu is null for an item of the menu bar itself.
bool performItem(MenuItem &item, QMenu *menu, const QKeyEvent &event)
{
    if (!item.isVisible() || !item.matches(event) || !item.validate())
        return false;
    if (menu)
        flashMenuTitle(*menu);
    item.setEnabled(true);
    item.trigger();
    return true;
}

bool performFirst(const QList<QAction *> &actions, QMenu *menu, const QKeyEvent &event)
{
    for (QAction *const action : actions) {
        QMenu *const submenu = action->isEnabled() ? action->menu() : nullptr;
        if (submenu && performKeyEquivalent(*submenu, event))
            return true;
        auto *const item = qobject_cast<MenuItem *>(action);
        if (item && performItem(*item, menu, event))
            return true;
    }
    return false;
}
} // namespace

bool performKeyEquivalent(const QKeyEvent &event)
{
    QMenuBar *const bar = mainMenuBar();
    const bool isReachable = bar && !isBlocked(*bar->window());
    return isReachable && !event.isAutoRepeat() && !belongsToText(event) &&
           performFirst(bar->actions(), nullptr, event);
}

bool performKeyEquivalent(QMenu &menu, const QKeyEvent &event)
{
    return performFirst(menu.actions(), &menu, event);
}

} // namespace platform

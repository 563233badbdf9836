#include "ToolbarMenu.h"

#include "QWPlatform/foundation/Localization.h"
#include "Toolbar.h"
#include "ToolbarDisplayModes.h"

#include <QMenu>

namespace platform
{

std::unique_ptr<QMenu> makeToolbarMenu(Toolbar &toolbar)
{
    auto menu = std::make_unique<QMenu>();
    for (const ToolbarDisplayModeTitle &entry : toolbarDisplayModeTitles) {
        QAction *const item = menu->addAction(localized(entry.title));
        item->setCheckable(true);
        item->setChecked(entry.mode == shownToolbarDisplayMode(toolbar));
        QObject::connect(item, &QAction::triggered, &toolbar,
                         [&toolbar, mode = entry.mode] { toolbar.chooseDisplayMode(mode); });
    }
    menu->addSeparator();
    QAction *const customize = menu->addAction(localized("Customize Toolbar…"));
    QObject::connect(customize, &QAction::triggered, &toolbar, [&toolbar] { toolbar.runCustomizationPalette(); });
    return menu;
}

} // namespace platform

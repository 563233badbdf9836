#include "PresetsMenu.h"

#include "QWUtilities/shortcuts/QWKeyboardShortcuts.h"
#include "QWUtilities/shortcuts/files/PresetMatch.h"

#include <QWPlatform/appkit/MenuItem.h>
#include <QWPlatform/foundation/Localization.h>

#include <QMenu>

#include <array>

namespace qw
{

namespace
{
struct Command
{
    const char *title; ///< Null: a separator.
    const char *action;
    bool isRegistrys; ///< Else the editor's.
};

constexpr std::array commands{
    Command{"Save Preset…", "saveShortcuts:", false},
    Command{"Import…", "loadShortcuts:", true},
    Command{"Export…", "exportShortcuts:", true},
    Command{nullptr, nullptr, false},
    Command{"Reset to Factory Defaults…", "loadFactoryPreset:", true},
    Command{nullptr, nullptr, false},
};
static_assert(commands.size() == 6, "the registry takes what follows the sixth item for presets");

void markCurrent(const QMenu &menu, const QWKeyboardShortcuts &registry)
{
    const PresetMatch match(registry);
    const QList<QAction *> presets = menu.actions().mid(commands.size());
    for (QAction *const item : presets) {
        item->setCheckable(match.isCurrent(platform::titleOf(*item)));
        item->setChecked(item->isCheckable());
    }
}
} // namespace

QMenu *makePresetsMenu(QWidget &window, QWKeyboardShortcuts &registry, QObject &editor)
{
    auto *const menu = new QMenu(&window);
    for (const Command &command : commands) {
        if (!command.title) {
            menu->addSeparator();
            continue;
        }
        auto *const item = platform::addMenuItem(*menu, platform::localized(command.title), command.action);
        item->setTarget(command.isRegistrys ? static_cast<QObject *>(&registry) : &editor);
    }
    QObject::connect(menu, &QMenu::aboutToShow, &registry, [menu, &registry] { markCurrent(*menu, registry); });
    return menu;
}

} // namespace qw

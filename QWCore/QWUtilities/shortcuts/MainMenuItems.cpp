#include "MainMenuItems.h"

#include <QWPlatform/appkit/MenuItem.h>
#include <QWPlatform/appkit/ResponderChain.h>

#include <QMenu>
#include <QMenuBar>

#include <algorithm>

namespace qw::MainMenuItems
{

namespace
{
Batch *currentBatch = nullptr;

QList<QAction *> mainMenu()
{
    const QMenuBar *const bar = platform::mainMenuBar();
    return bar ? bar->actions() : QList<QAction *>();
}

QAction *firstWithTitle(const QList<QAction *> &items, const QString &title)
{
    const auto found = std::find_if(items.begin(), items.end(), [&](const QAction *item) {
        return !item->isSeparator() && platform::titleOf(*item) == title;
    });
    return found == items.end() ? nullptr : *found;
}

QAction *itemWithTitle(const QMenu &menu, const QString &title)
{
    return currentBatch ? currentBatch->itemWithTitle(menu, title) : firstWithTitle(menu.actions(), title);
}

QAction *follow(QAction *item, const QStringList &titles)
{
    for (const QString &title : titles) {
        const QMenu *const submenu = item->menu();
        item = submenu ? itemWithTitle(*submenu, title) : nullptr;
        if (!item)
            return nullptr;
    }
    return item;
}
} // namespace

platform::MenuItem *itemAtPath(const QStringList &titles)
{
    const QList<QAction *> topLevelItems = currentBatch ? currentBatch->topLevelItems() : mainMenu();
    for (QAction *const top : topLevelItems) {
        if (QAction *const item = follow(top, titles))
            return qobject_cast<platform::MenuItem *>(item);
    }
    return nullptr;
}

QMenu *menuWithTitle(const QString &title)
{
    const QAction *const item = firstWithTitle(mainMenu(), title);
    return item ? item->menu() : nullptr;
}

Batch::Batch()
    : m_topLevelItems(mainMenu())
{
    currentBatch = this;
}

Batch::~Batch()
{
    currentBatch = nullptr;
}

QAction *Batch::itemWithTitle(const QMenu &menu, const QString &title)
{
    auto table = m_menus.find(&menu);
    if (table == m_menus.end()) {
        table = m_menus.insert(&menu, {});
        const QList<QAction *> items = menu.actions();
        for (auto item = items.rbegin(); item != items.rend(); ++item) { // the first of equal titles stays
            if (!(*item)->isSeparator())
                table->insert(platform::titleOf(**item), *item);
        }
    }
    return table->value(title);
}

} // namespace qw::MainMenuItems

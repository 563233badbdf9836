#include "MainMenuItems.h"

#include <QWBase/QWApplicationLog.h>
#include <QWPlatform/System.h>
#include <QWPlatform/appkit/MenuItem.h>
#include <QWPlatform/appkit/ResponderChain.h>
#include <QWPlatform/foundation/Localization.h>

#include <QMenu>
#include <QMenuBar>
#include <QSet>

#include <algorithm>

namespace qw::MainMenuItems
{

namespace
{
Batch *currentBatch = nullptr;

using platform::MenuItem;

/// Paths of items that the log has told of.
struct ForeignItems
{
    QSet<QString> paths;
};

QList<QList<QAction *>> topLevelItemsOfAllBars()
{
    QList<QList<QAction *>> items;
    const QList<QMenuBar *> bars = platform::menuBars();
    for (const QMenuBar *const bar : bars)
        items.append(bar->actions());
    return items;
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

void tellOfForeignItem(const QString &path)
{
    QSet<QString> &told = platform::System::current().shared<ForeignItems>([] { return new ForeignItems; }).paths;
    if (told.contains(path))
        return;
    told.insert(path);
    QWApplicationLog::sharedLog().warningMessage(
        {"QWShortcut"},
        platform::formatted("The menu item \"%@\" is no platform::MenuItem: its shortcut shows no key there.", {path}));
}

MenuItem *itemBelow(const QList<QAction *> &topLevelItems, const QStringList &titles)
{
    for (QAction *const top : topLevelItems) {
        QAction *const item = follow(top, titles);
        auto *const menuItem = qobject_cast<MenuItem *>(item);
        if (item && !menuItem)
            tellOfForeignItem(QStringList{platform::titleOf(*top), titles.join('>')}.join('>'));
        if (item)
            return menuItem;
    }
    return nullptr;
}
} // namespace

QList<MenuItem *> itemsAtPath(const QStringList &titles)
{
    QList<MenuItem *> items;
    const auto bars = currentBatch ? currentBatch->topLevelItems() : topLevelItemsOfAllBars();
    for (const QList<QAction *> &topLevelItems : bars)
        items.append(itemBelow(topLevelItems, titles));
    items.removeAll(nullptr);
    return items;
}

QMenu *menuWithTitle(const QString &title)
{
    const QMenuBar *const bar = platform::mainMenuBar();
    const QAction *const item = bar ? firstWithTitle(bar->actions(), title) : nullptr;
    return item ? item->menu() : nullptr;
}

Batch::Batch()
    : Batch(topLevelItemsOfAllBars())
{
}

Batch::Batch(const QMenuBar &onlyBar)
    : Batch(QList<QList<QAction *>>{onlyBar.actions()})
{
}

Batch::Batch(QList<QList<QAction *>> topLevelItems)
    : m_topLevelItems(std::move(topLevelItems))
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

#include "SortedMenuBuilder.h"

#include "QWBase/QWMenuSorting.h"

#include <QWPlatform/appkit/MenuItem.h>

#include <QMenu>

#include <algorithm>

using platform::MenuItem;

namespace qw
{

namespace
{
struct KeyedItem
{
    QCollatorSortKey key;
    MenuItem *item;
};

/// Equal titles stay in order of addition.
std::vector<KeyedItem> sorted(const std::vector<MenuItem *> &items)
{
    std::vector<KeyedItem> keyed;
    keyed.reserve(items.size());
    for (MenuItem *const item : items)
        keyed.push_back({QWMenuSorting::sortKey(item->title()), item});
    std::stable_sort(keyed.begin(), keyed.end(),
                     [](const KeyedItem &left, const KeyedItem &right) { return left.key < right.key; });
    return keyed;
}
} // namespace

SortedMenuBuilder::SortedMenuBuilder(QMenu &menu)
    : m_menu(menu)
{
    platform::setAutoenablesItems(menu);
}

SortedMenuBuilder::~SortedMenuBuilder()
{
    build();
}

MenuItem *SortedMenuBuilder::addItemSortedWithTitle(const QString &title)
{
    m_items.push_back(new MenuItem(title, &m_menu));
    return m_items.back();
}

SortedMenuBuilder &SortedMenuBuilder::submenuWithTitle(const QString &title)
{
    auto &builder = m_submenus[title];
    if (!builder) {
        QMenu *submenu = _existingSubmenu(title);
        if (!submenu) {
            submenu = new QMenu(&m_menu);
            addItemSortedWithTitle(title)->setMenu(submenu);
        }
        builder = std::make_shared<SortedMenuBuilder>(*submenu);
    }
    return *builder;
}

void SortedMenuBuilder::build()
{
    for (const auto &builder : m_submenus)
        builder->build();
    const auto items = std::exchange(m_items, {});
    if (items.empty())
        return; // merging nothing would still ask every item for its key
    if (m_menu.isEmpty())
        _append(items);
    else
        _merge(items);
}

QMenu *SortedMenuBuilder::_existingSubmenu(const QString &title) const
{
    const QList<QAction *> items = m_menu.actions();
    const auto found = std::find_if(items.begin(), items.end(), [&](const QAction *item) {
        return item->menu() && platform::titleOf(*item) == title;
    });
    return found == items.end() ? nullptr : (*found)->menu();
}

void SortedMenuBuilder::_append(const std::vector<MenuItem *> &items)
{
    for (const KeyedItem &keyed : sorted(items))
        m_menu.addAction(keyed.item);
}

/// Each goes before the first of the old items that sorts after it.
void SortedMenuBuilder::_merge(const std::vector<MenuItem *> &items)
{
    const QList<QAction *> old = m_menu.actions();
    std::vector<QCollatorSortKey> oldKeys;
    for (const QAction *const item : old)
        oldKeys.push_back(QWMenuSorting::sortKey(platform::titleOf(*item)));
    for (const KeyedItem &keyed : sorted(items)) {
        const auto place = std::upper_bound(oldKeys.begin(), oldKeys.end(), keyed.key);
        m_menu.insertAction(place == oldKeys.end() ? nullptr : old[place - oldKeys.begin()], keyed.item);
    }
}

} // namespace qw

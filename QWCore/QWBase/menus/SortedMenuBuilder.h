#pragma once

#include <QWBase/qwbase_private.h>

#include <QHash>
#include <QString>

#include <memory>
#include <vector>

namespace platform
{
class MenuItem;
}

class QMenu;

namespace qw
{

/// Fills a menu with many items. The result is that of as many addItemSortedWithTitle() calls in the same order, but
/// titles are prepared for sorting once and the menu is told of each item once. Items exist as soon as they are added
/// and are put into their menus by build().
class QWBASE_SHARED_EXPORT SortedMenuBuilder
{
public:
    /// @p menu is not owned and in title order; it may hold items already.
    explicit SortedMenuBuilder(QMenu &menu);

    /// Calls build(), if that was not done.
    ~SortedMenuBuilder();

    SortedMenuBuilder(const SortedMenuBuilder &) = delete;
    SortedMenuBuilder &operator=(const SortedMenuBuilder &) = delete;

    /// New item, owned by the menu.
    platform::MenuItem *addItemSortedWithTitle(const QString &title);

    /// The submenu of the item with exactly this title, which is added when there is none, with an empty submenu. Items
    /// without a submenu are passed over. The builder lives as long as this one, which builds it too.
    SortedMenuBuilder &submenuWithTitle(const QString &title);

    QMenu &menu() const { return m_menu; }

    /// Puts the items added so far into this menu and its submenus.
    void build();

private:
    QMenu *_existingSubmenu(const QString &title) const;
    void _append(const std::vector<platform::MenuItem *> &items);
    void _merge(const std::vector<platform::MenuItem *> &items);

    QMenu &m_menu;
    std::vector<platform::MenuItem *> m_items; ///< In order of addition, not yet in the menu.
    QHash<QString, std::shared_ptr<SortedMenuBuilder>> m_submenus;
};

} // namespace qw

#pragma once

#include <QWPlatform/appkit/MenuItem.h>

#include <QMenu>

inline QStringList titlesOf(const QMenu &menu)
{
    QStringList titles;
    for (const QAction *item : menu.actions())
        titles.append(platform::titleOf(*item));
    return titles;
}

/// The submenu of the first item titled @p title, or null.
inline QMenu *submenuOf(const QMenu &menu, const QString &title)
{
    for (const QAction *item : menu.actions())
        if (platform::titleOf(*item) == title)
            return item->menu();
    return nullptr;
}

inline platform::MenuItem *itemOf(const QMenu &menu, const QString &title)
{
    for (QAction *item : menu.actions())
        if (platform::titleOf(*item) == title)
            return qobject_cast<platform::MenuItem *>(item);
    return nullptr;
}

/// Titles with submenus in brackets: "A [B, C [D]]".
inline QString outline(const QMenu &menu)
{
    QStringList items;
    for (const QAction *item : menu.actions())
        items.append(item->menu() ? QString(platform::titleOf(*item) + " [" + outline(*item->menu()) + "]")
                                  : platform::titleOf(*item));
    return items.join(", ");
}

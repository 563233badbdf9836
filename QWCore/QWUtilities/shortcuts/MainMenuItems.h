#pragma once

#include <QHash>
#include <QString>
#include <QStringList>

class QAction;
class QMenu;

namespace platform
{
class MenuItem;
}

namespace qw
{

/// Finds items of the host's main menu by their titles.
namespace MainMenuItems
{

/// The item below the first top-level item from which all @p titles lead down; null when there is none.
platform::MenuItem *itemAtPath(const QStringList &titles);

/// The submenu of the top-level item titled @p title, or null.
QMenu *menuWithTitle(const QString &title);

/// While one lives, titles are looked up in tables made on the way instead of one by one; whoever makes one changes
/// no titles meanwhile. They do not nest.
class Batch
{
public:
    Batch();
    ~Batch();
    Batch(const Batch &) = delete;
    Batch &operator=(const Batch &) = delete;

    /// The first item of @p menu with that title, or null.
    QAction *itemWithTitle(const QMenu &menu, const QString &title);

    const QList<QAction *> &topLevelItems() const { return m_topLevelItems; }

private:
    QList<QAction *> m_topLevelItems;
    QHash<const QMenu *, QHash<QString, QAction *>> m_menus;
};

} // namespace MainMenuItems

} // namespace qw

#pragma once

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

class QAction;
class QMenu;
class QMenuBar;

namespace platform
{
class MenuItem;
}

namespace qw
{

/// Finds items of the host's main menu by their titles.
namespace MainMenuItems
{

/// The item below the first top-level item from which all @p titles lead down, of each window's menu bar that has one.
/// An item that is no platform::MenuItem can take no key: it is left out, and the log says so once for its path.
QList<platform::MenuItem *> itemsAtPath(const QStringList &titles);

/// The submenu of the top-level item titled @p title, in the menu bar that the keys go to; or null.
QMenu *menuWithTitle(const QString &title);

/// While one lives, titles are looked up in tables made on the way instead of one by one, in the bars that there were
/// when it was made; whoever makes one changes no titles meanwhile. They do not nest.
class Batch
{
public:
    Batch();
    explicit Batch(const QMenuBar &onlyBar);
    ~Batch();
    Batch(const Batch &) = delete;
    Batch &operator=(const Batch &) = delete;

    /// The first item of @p menu with that title, or null.
    QAction *itemWithTitle(const QMenu &menu, const QString &title);

    /// Of each bar.
    const QList<QList<QAction *>> &topLevelItems() const { return m_topLevelItems; }

private:
    explicit Batch(QList<QList<QAction *>> topLevelItems);

    QList<QList<QAction *>> m_topLevelItems;
    QHash<const QMenu *, QHash<QString, QAction *>> m_menus;
};

} // namespace MainMenuItems

} // namespace qw

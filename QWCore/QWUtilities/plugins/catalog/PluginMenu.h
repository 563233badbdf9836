#pragma once

#include <QWPlatform/appkit/Selector.h>

#include <QHash>
#include <QVariant>

#include <deque>
#include <memory>
#include <vector>

class QMenu;
class QObject;

namespace qw
{

class SortedMenuBuilder;

/// Builds a menu of plug-ins in folders, all in title order.
class PluginMenu
{
public:
    /// One level of the menu, made known here and turned into items by take().
    class Folder
    {
    private:
        friend class PluginMenu;

        struct Entry
        {
            QString title;
            QVariant representedObject;
            Folder *folder; ///< What the item opens; null for a plug-in.
        };

        std::vector<Entry> m_entries;       ///< In order of addition.
        std::size_t m_indexed = 0;          ///< How many of them the index knows.
        QHash<QString, Folder *> m_byTitle; ///< What the first entry of each title opens.
    };

    /// Items are to send @p action to @p target, which is not owned.
    PluginMenu(QObject *target, const platform::Selector &action);
    ~PluginMenu();

    Folder &top() { return m_folders.front(); }

    /// The folder titled @p title in @p parent, made when there is no item of that title; null when the first such item
    /// is a plug-in.
    Folder *folder(Folder &parent, const QString &title);

    static void addItem(Folder &folder, const QString &title, const QVariant &representedObject);

    /// The finished menu. Without items, it holds one that reads @p placeholder and does nothing, unless that is "".
    std::unique_ptr<QMenu> take(const QString &placeholder = {});

private:
    void _fill(SortedMenuBuilder &items, Folder &folder) const;

    QObject *m_target;
    platform::Selector m_action;
    std::deque<Folder> m_folders; ///< The top one first; they stay where they are.
};

} // namespace qw

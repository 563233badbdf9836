#pragma once

#include <QWUtilities/qwutilities_export.h>

#include <QWBase/QWSortedMenuBuilder.h>
#include <QWPlatform/appkit/Selector.h>

#include <QHash>
#include <QList>
#include <QVariant>

#include <deque>
#include <memory>

class QMenu;
class QObject;

/// Builds a menu of plug-ins in folders, all in title order.
class QWUTILITIES_EXPORT PluginMenu
{
public:
    /// One level of the menu.
    class Folder
    {
    public:
        explicit Folder(QWSortedMenuBuilder &items)
            : m_items(items)
        {
        }

    private:
        friend class PluginMenu;

        QWSortedMenuBuilder &m_items;
        QHash<QString, Folder *> m_byTitle; ///< What the first item of each title opens; null when that is a plug-in.
    };

    /// Items are to send @p action to @p target, which is not owned.
    PluginMenu(QObject *target, const platform::Selector &action);
    ~PluginMenu();

    Folder &top() { return m_folders.front(); }

    /// The folder titled @p title in @p parent, made when there is no item of that title; null when the first such item
    /// is a plug-in.
    Folder *folder(Folder &parent, const QString &title);

    void addItem(Folder &folder, const QString &title, const QVariant &representedObject);

    /// The finished menu. Without items, it holds one that reads @p placeholder and does nothing, unless that is "".
    std::unique_ptr<QMenu> take(const QString &placeholder = {});

private:
    QObject *m_target;
    platform::Selector m_action;
    std::unique_ptr<QMenu> m_menu;
    QWSortedMenuBuilder m_items;
    std::deque<Folder> m_folders; ///< The top one first; they stay where they are.
    bool m_isEmpty = true;
};

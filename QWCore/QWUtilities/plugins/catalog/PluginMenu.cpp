#include "PluginMenu.h"

#include <QWBase/menus/SortedMenuBuilder.h>
#include <QWPlatform/appkit/MenuItem.h>

#include <QMenu>

namespace qw
{

PluginMenu::PluginMenu(QObject *target, const platform::Selector &action)
    : m_target(target)
    , m_action(action)
    , m_folders(1)
{
}

PluginMenu::~PluginMenu() = default;

PluginMenu::Folder *PluginMenu::folder(Folder &parent, const QString &title)
{
    for (; parent.m_indexed < parent.m_entries.size(); ++parent.m_indexed) {
        const Folder::Entry &entry = parent.m_entries[parent.m_indexed];
        if (!parent.m_byTitle.contains(entry.title))
            parent.m_byTitle.insert(entry.title, entry.folder);
    }
    const auto known = parent.m_byTitle.constFind(title);
    if (known != parent.m_byTitle.constEnd())
        return *known;
    Folder *made = &m_folders.emplace_back();
    parent.m_entries.push_back({title, {}, made});
    return made;
}

void PluginMenu::addItem(Folder &folder, const QString &title, const QVariant &representedObject)
{
    folder.m_entries.push_back({title, representedObject, nullptr});
}

std::unique_ptr<QMenu> PluginMenu::take(const QString &placeholder)
{
    auto menu = std::make_unique<QMenu>();
    SortedMenuBuilder items(*menu);
    _fill(items, top());
    items.build();
    if (menu->isEmpty() && !placeholder.isEmpty())
        platform::addMenuItem(*menu, placeholder);
    return menu;
}

/// Level by level, so that what belongs together lies together.
void PluginMenu::_fill(SortedMenuBuilder &items, Folder &folder) const
{
    for (const Folder::Entry &entry : folder.m_entries) {
        if (entry.folder) {
            _fill(items.submenuWithTitle(entry.title), *entry.folder);
            continue;
        }
        auto *item = items.addItemSortedWithTitle(entry.title);
        item->setRepresentedObject(entry.representedObject);
        item->setTarget(m_target);
        item->setAction(m_action);
    }
}

} // namespace qw

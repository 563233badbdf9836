#include "PluginMenu.h"

#include <QWPlatform/appkit/MenuItem.h>

#include <QMenu>

PluginMenu::PluginMenu(QObject *target, const platform::Selector &action)
    : m_target(target)
    , m_action(action)
    , m_menu(std::make_unique<QMenu>())
    , m_items(*m_menu)
{
    m_folders.emplace_back(m_items);
}

PluginMenu::~PluginMenu() = default;

PluginMenu::Folder *PluginMenu::folder(Folder &parent, const QString &title)
{
    const auto known = parent.m_byTitle.constFind(title);
    if (known != parent.m_byTitle.constEnd())
        return *known;
    m_isEmpty = false;
    Folder *made = &m_folders.emplace_back(parent.m_items.submenuWithTitle(title));
    parent.m_byTitle.insert(title, made);
    return made;
}

void PluginMenu::addItem(Folder &folder, const QString &title, const QVariant &representedObject)
{
    auto *item = folder.m_items.addItemSortedWithTitle(title);
    item->setRepresentedObject(representedObject);
    item->setTarget(m_target);
    item->setAction(m_action);
    if (!folder.m_byTitle.contains(title))
        folder.m_byTitle.insert(title, nullptr);
    m_isEmpty = false;
}

std::unique_ptr<QMenu> PluginMenu::take(const QString &placeholder)
{
    m_items.build();
    if (m_isEmpty && !placeholder.isEmpty())
        platform::addMenuItem(*m_menu, placeholder);
    return std::move(m_menu);
}

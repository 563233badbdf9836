#include "ColumnsMenu.h"

#include <QWPlatform/appkit/MenuItem.h>

#include <QMenu>

#include <algorithm>

namespace qw
{

ColumnsMenu::ColumnsMenu(IsShown isShown, Toggle toggle)
    : m_isShown(std::move(isShown))
    , m_toggle(std::move(toggle))
{
}

void ColumnsMenu::add(const QString &title, const QString &identifier)
{
    const auto found =
        std::find_if(m_items.begin(), m_items.end(), [&](const Item &item) { return item.identifier == identifier; });
    if (found == m_items.end())
        m_items.push_back({title, identifier});
    else
        found->title = title;
}

bool ColumnsMenu::holds(const QString &identifier) const
{
    return std::any_of(m_items.begin(), m_items.end(), [&](const Item &item) { return item.identifier == identifier; });
}

void ColumnsMenu::fill(QMenu &menu) const
{
    for (const Item &item : m_items) {
        platform::MenuItem *const entry = platform::addMenuItem(menu, item.title);
        entry->setCheckable(true);
        entry->setChecked(m_isShown(item.identifier));
        QObject::connect(entry, &QAction::triggered, entry,
                         [toggle = m_toggle, identifier = item.identifier] { toggle(identifier); });
    }
}

} // namespace qw

#pragma once

#include <QString>

#include <functional>
#include <vector>

class QMenu;

namespace qw
{

/// Columns that the user may show and hide, as items of menus.
class ColumnsMenu
{
public:
    using IsShown = std::function<bool(const QString &identifier)>;
    using Toggle = std::function<void(const QString &identifier)>;

    ColumnsMenu(IsShown isShown, Toggle toggle);

    /// @p title as it reads, in the user's language; a second one for a column takes the place of the first.
    void add(const QString &title, const QString &identifier);

    bool isEmpty() const { return m_items.empty(); }
    bool holds(const QString &identifier) const;

    /// An item for each column, with a check mark where it shows, at the end of @p menu.
    void fill(QMenu &menu) const;

private:
    struct Item
    {
        QString title;
        QString identifier;
    };

    std::vector<Item> m_items;
    IsShown m_isShown;
    Toggle m_toggle;
};

} // namespace qw

#include "ToolbarDelegate.h"

#include "ToolbarItem.h"

namespace platform
{

ToolbarDelegate::~ToolbarDelegate() = default;

QStringList ToolbarDelegate::toolbarSelectableItemIdentifiers(Toolbar &)
{
    return {};
}

bool ToolbarDelegate::validateToolbarItem(ToolbarItem &)
{
    return true;
}

} // namespace platform

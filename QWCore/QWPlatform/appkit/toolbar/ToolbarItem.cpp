#include "ToolbarItem.h"

#include "QWPlatform/appkit/menus/ShownTitle.h"

namespace platform
{

ToolbarItem::ToolbarItem(const QString &identifier, QObject *parent)
    : QAction(parent)
    , m_identifier(identifier)
{
    setObjectName(identifier);
}

ToolbarItem::~ToolbarItem() = default;

void ToolbarItem::setLabel(const QString &label)
{
    m_label = label;
    setText(shownTitle(label));
    setIconText(shownTitle(label));
}

} // namespace platform

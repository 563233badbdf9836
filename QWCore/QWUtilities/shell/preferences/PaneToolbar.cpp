#include "PaneToolbar.h"

#include "QWUtilities/shell/QWPreferencesPanel.h"

#include <QWPlatform/appkit/Panel.h>
#include <QWPlatform/appkit/toolbar/Toolbar.h>
#include <QWPlatform/appkit/toolbar/ToolbarItem.h>

using platform::Toolbar;
using platform::ToolbarItem;

namespace qw
{

PaneToolbar::PaneToolbar(QWPreferencesPanel &controller)
    : m_controller(controller)
{
}

PaneToolbar::~PaneToolbar() = default;

Toolbar *PaneToolbar::makeToolbar(platform::Panel &panel)
{
    auto *const toolbar = new Toolbar("preferencesToolbar", &panel);
    toolbar->setAllowsUserCustomization(false);
    toolbar->setAutosavesConfiguration(false);
    toolbar->setDisplayMode(Toolbar::IconAndLabel);
    toolbar->setToolbarDelegate(this);
    return toolbar;
}

QStringList PaneToolbar::toolbarAllowedItemIdentifiers(Toolbar &)
{
    return m_controller.toolbarItemIdentifiers();
}

QStringList PaneToolbar::toolbarDefaultItemIdentifiers(Toolbar &)
{
    return m_controller.toolbarItemIdentifiers();
}

QStringList PaneToolbar::toolbarSelectableItemIdentifiers(Toolbar &)
{
    return m_controller.toolbarItemIdentifiers();
}

std::unique_ptr<ToolbarItem> PaneToolbar::toolbarItemForItemIdentifier(Toolbar &, const QString &identifier, bool)
{
    const QWPreferencesPane *const pane = m_controller.paneForIdentifier(identifier);
    if (!pane)
        return nullptr;
    auto item = std::make_unique<ToolbarItem>(identifier);
    item->setLabel(pane->title());
    item->setToolTip(pane->toolTip());
    item->setImage(pane->image());
    item->setTarget(&m_controller);
    item->setAction("changePane:");
    return item;
}

} // namespace qw

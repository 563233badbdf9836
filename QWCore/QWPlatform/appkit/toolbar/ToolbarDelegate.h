#pragma once

#include <QWPlatform/qwplatform_private.h>

#include <QStringList>

#include <memory>

namespace platform
{

class Toolbar;
class ToolbarItem;

/// Says what a toolbar holds. Main thread.
class QWPLATFORM_SHARED_EXPORT ToolbarDelegate
{
public:
    virtual ~ToolbarDelegate();

    /// Everything that the user can put into the toolbar, standard items too, in the order of the customization panel.
    virtual QStringList toolbarAllowedItemIdentifiers(Toolbar &toolbar) = 0;

    /// What it holds until the user changes it.
    virtual QStringList toolbarDefaultItemIdentifiers(Toolbar &toolbar) = 0;

    /// Items of which one at a time is shown selected; none by default.
    virtual QStringList toolbarSelectableItemIdentifiers(Toolbar &toolbar);

    /// A new item; null for an unknown identifier. Never asked for standard items. @p willBeInserted is false for
    /// items that are only pictured in the customization panel.
    virtual std::unique_ptr<ToolbarItem> toolbarItemForItemIdentifier(Toolbar &toolbar, const QString &identifier,
                                                                      bool willBeInserted) = 0;

    /// Whether @p item is enabled now; yes by default.
    virtual bool validateToolbarItem(ToolbarItem &item);
};

} // namespace platform

#pragma once

#include <QWPlatform/appkit/toolbar/ToolbarDelegate.h>

class QWPreferencesPanel;

namespace platform
{
class Panel;
}

namespace qw
{

/// Says what the toolbar of the preferences panel holds: an item for each pane. Outlives the panel. Main thread.
class PaneToolbar : public platform::ToolbarDelegate
{
public:
    /// @p controller, the target of the items, is not owned and must live as long as this.
    explicit PaneToolbar(QWPreferencesPanel &controller);
    ~PaneToolbar() override;
    PaneToolbar(const PaneToolbar &) = delete;
    PaneToolbar &operator=(const PaneToolbar &) = delete;

    /// A new toolbar, a child of @p panel, with its items.
    platform::Toolbar *makeToolbar(platform::Panel &panel);

    QStringList toolbarAllowedItemIdentifiers(platform::Toolbar &toolbar) override;
    QStringList toolbarDefaultItemIdentifiers(platform::Toolbar &toolbar) override;
    QStringList toolbarSelectableItemIdentifiers(platform::Toolbar &toolbar) override;
    std::unique_ptr<platform::ToolbarItem>
    toolbarItemForItemIdentifier(platform::Toolbar &toolbar, const QString &identifier, bool willBeInserted) override;

private:
    QWPreferencesPanel &m_controller;
};

} // namespace qw

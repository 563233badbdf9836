#pragma once

#include <QWPlatform/appkit/toolbar/ToolbarDelegate.h>
#include <QWUtilities/qwutilities_private.h>

class QWManual;

namespace platform
{
class Panel;
class WebView;
} // namespace platform

namespace qw
{

/// The toolbar and the keys of the manual's window: what leads from the user to the manual's operations. Outlives the
/// window. Main thread.
class QWUTILITIES_TEST_EXPORT ManualToolbar : public platform::ToolbarDelegate
{
public:
    /// @p manual, the target of the items, is not owned and must live as long as this.
    explicit ManualToolbar(QWManual &manual);
    ~ManualToolbar() override;
    ManualToolbar(const ManualToolbar &) = delete;
    ManualToolbar &operator=(const ManualToolbar &) = delete;

    /// Puts the toolbar on top of the window, which then owns it, and sets up the window's keys. @p view, which is not
    /// owned, says where back and forward lead.
    void addToWindow(platform::Panel &window, const platform::WebView &view);

    /// Whether there is a manual to be shown and printed.
    void setFound(bool found);

    QStringList toolbarAllowedItemIdentifiers(platform::Toolbar &toolbar) override;
    QStringList toolbarDefaultItemIdentifiers(platform::Toolbar &toolbar) override;
    std::unique_ptr<platform::ToolbarItem>
    toolbarItemForItemIdentifier(platform::Toolbar &toolbar, const QString &identifier, bool willBeInserted) override;
    bool validateToolbarItem(platform::ToolbarItem &item) override;

private:
    void _makeShortcuts(platform::Panel &window);
    bool _mayUse(const QString &identifier) const;

    QWManual &m_manual;
    bool m_found = false; ///< The index page was there when the window was first opened; not asked again.
    const platform::WebView *m_view = nullptr;
    platform::Toolbar *m_toolbar = nullptr; ///< Owned by the window.
};

} // namespace qw

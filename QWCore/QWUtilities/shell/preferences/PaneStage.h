#pragma once

#include <QPointer>
#include <QSize>

class QVariantAnimation;
class QWPreferencesPane;
class QWidget;

namespace platform
{
class Panel;
class Toolbar;
} // namespace platform

namespace qw
{

class PaneToolbar;

/// What the preferences panel shows: a toolbar, and below it one pane at a time, to whose size the panel grows or
/// shrinks. Main thread.
class PaneStage
{
public:
    /// Lays @p panel out, which outlives this, with a toolbar of those @p items.
    PaneStage(platform::Panel &panel, PaneToolbar &items);

    platform::Toolbar &toolbar() const { return *m_toolbar; }

    /// Shows @p pane in place of the one that shows, which goes back to @p backstage. It is whole at once; the panel
    /// may open over it only then.
    void show(QWPreferencesPane &pane, QWidget &backstage);

    /// Of the panel, once it is no longer on its way to it.
    QSize panelSize() const;

private:
    bool _clear(QWidget &backstage);
    void _fitPanel(const QSize &content);
    void _setFrameAnimated(const QSize &size);

    platform::Panel &m_panel;
    QWidget *m_contentView;               ///< Owned by the panel, as is the toolbar.
    platform::Toolbar *m_toolbar;         ///< Made after the content, which the keyboard reaches first.
    QPointer<QVariantAnimation> m_resize; ///< While the panel is on its way to another size.
};

} // namespace qw

#pragma once

#include "QWPreferencesPane.h"

#include <QWPlatform/System.h>
#include <QWPlatform/appkit/toolbar/ToolbarDelegate.h>
#include <QWUtilities/qwutilities_export.h>

#include <QObject>
#include <QPointer>

#include <memory>
#include <utility>

class QVariantAnimation;

namespace platform
{
class InterfaceFile;
class Panel;
} // namespace platform

/// The host's preferences: one panel whose toolbar switches between panes, and which takes the size of each. The host
/// subclasses it, names the interface file that holds the panel and the panes, and installs it:
///
///     class Preferences : public QWPreferencesPanel { … };
///     QWPreferencesPanel::install<Preferences>();   // in the launch
///     QWPreferencesPanel::open();                   // on "Preferences…"
///
/// One per System. Main thread.
class QWUTILITIES_EXPORT QWPreferencesPanel : public QObject, public platform::ToolbarDelegate
{
    Q_OBJECT

public:
    /// Makes the host's class @p Host the shared controller; when there is one already, it stays, and no other is made.
    template <class Host>
    static QWPreferencesPanel &install()
    {
        const auto make = []() -> QWPreferencesPanel * { return new Host; };
        return platform::System::current().shared<QWPreferencesPanel>(make);
    }

    /// The installed one; without any, one that has no panel and opens nothing.
    static QWPreferencesPanel &sharedInstance();

    /// Opens with the pane shown last, first with the first pane.
    static void open();

    /// Opens with a pane, in the middle of the screen; an unknown @p identifier is none.
    static void openPane(const QString &identifier);

    /// Brings the controls of every pane up to date with the defaults.
    static void update();

    ~QWPreferencesPanel() override;

    /// Name of the host's interface file. Its outermost widget is a plain one that holds the panel, named "panel", and
    /// the panes beside it. Once loaded, nibDidLoad() is called.
    virtual QString panelNibName() const;

    /// In the order of the toolbar; asked for when the interface file is loaded. Not owned.
    virtual QList<QWPreferencesPane *> panes() const;

    /// The first of the panes with that identifier, or null.
    QWPreferencesPane *paneForIdentifier(const QString &identifier) const;

    /// The action of the toolbar's items. The panel grows or shrinks to the new pane: from its top edge while it shows,
    /// else from its bottom left corner.
    Q_INVOKABLE void changePane(QObject *toolbarItem);

    platform::Panel *panel() const { return m_panel; } ///< Null before the first opening.
    QWPreferencesPane *currentPane() const { return m_currentPane; }
    const QStringList &toolbarItemIdentifiers() const { return m_toolbarItemIdentifiers; }

    QStringList toolbarAllowedItemIdentifiers(platform::Toolbar &toolbar) override;
    QStringList toolbarDefaultItemIdentifiers(platform::Toolbar &toolbar) override;
    QStringList toolbarSelectableItemIdentifiers(platform::Toolbar &toolbar) override;
    std::unique_ptr<platform::ToolbarItem>
    toolbarItemForItemIdentifier(platform::Toolbar &toolbar, const QString &identifier, bool willBeInserted) override;

protected:
    QWPreferencesPanel();

    /// The place to connect the outlets of the panes. One that is missing keeps the panel from opening.
    virtual void nibDidLoad(platform::InterfaceFile &nib);

private:
    void _openPane(const QString &identifier);
    void _update();
    bool _loadNib();
    void _makeContentView();
    void _makeToolbar();
    void _selectPane(const QString &identifier);
    void _swapPane(QWPreferencesPane &pane);
    void _fitPanel(const QSize &content);
    void _setFrameAnimated(const QSize &size);
    void windowWillClose();

    std::unique_ptr<QWidget> m_nib;
    platform::Panel *m_panel = nullptr;
    QPointer<QWPreferencesPane> m_currentPane;
    QStringList m_toolbarItemIdentifiers;
    platform::Toolbar *m_toolbar = nullptr;
    QWidget *m_contentView = nullptr;
    QPointer<QVariantAnimation> m_resize; ///< While the panel is on its way to another size.
};

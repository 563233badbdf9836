#pragma once

#include <QWUtilities/qwutilities_export.h>

#include <QIcon>
#include <QWidget>

#include <memory>

namespace platform
{
class UserDefaults;
}

/// One pane of the preferences panel: a view whose controls edit user defaults. The host subclasses it for each pane
/// and registers the class with platform::InterfaceFile. Its size is the one it is given in the interface file, or more
/// where its layout needs it. Its toolTip() is that of its toolbar item. Main thread.
class QWUTILITIES_EXPORT QWPreferencesPane : public QWidget
{
    Q_OBJECT

public:
    /// Made by the interface file, as a child of @p parent.
    explicit QWPreferencesPane(QWidget *parent = nullptr);
    ~QWPreferencesPane() override;

    /// Of its toolbar item; unique among the panes. "" in the base.
    virtual QString identifier() const;

    /// The label of its toolbar item, for the user; "" in the base.
    virtual QString title() const;

    /// Nobody asks for it: the panel takes the view's own toolTip(). "" in the base.
    virtual QString tooltip() const;

    /// The picture of its toolbar item (see platform::tintedIcon()); null in the base.
    virtual QIcon image() const;

    // Around a change of pane, in this order: old will resign, new will become, old did resign, new did become.

    /// The pane is about to be shown, after the old one's paneWillResignFront(). Does nothing in the base.
    virtual void paneWillBecomeFront();

    /// The pane is shown, but not yet the panel's currentPane(). Does nothing in the base.
    virtual void paneDidBecomeFront();

    /// The pane is about to be replaced by another. Closing the panel is no such case. Does nothing in the base.
    virtual void paneWillResignFront();

    /// The pane is replaced; the new one is shown already. Does nothing in the base.
    virtual void paneDidResignFront();

    /// Brings the controls up to date with the defaults: when the panel is loaded, and at each
    /// QWPreferencesPanel::update(). Does nothing in the base.
    virtual void updateControls();

    /// The action "itemChanged:" of the pane's controls, for its class to handle: @p sender is the control. Does
    /// nothing in the base.
    Q_INVOKABLE virtual void itemChanged(QObject *sender);

    /// What the panel's content becomes for this pane, in pixels.
    QSize paneSize() const;

protected:
    /// The settings of the System on which the pane was made.
    platform::UserDefaults &defaults() const;

private:
    class Private;
    std::unique_ptr<Private> d;
};

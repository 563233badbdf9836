#pragma once

#include <QWUtilities/qwutilities_export.h>

#include <QIcon>
#include <QWidget>

namespace platform
{
class UserDefaults;
}

/// One pane of the preferences panel: a view whose controls edit user defaults. The host subclasses it for each pane.
/// Its size is the one it is given in the interface file, or more where its layout needs it. Its toolTip() is that of
/// its toolbar item.
class QWUTILITIES_EXPORT QWPreferencesPane : public QWidget
{
    Q_OBJECT

public:
    explicit QWPreferencesPane(QWidget *parent = nullptr);
    ~QWPreferencesPane() override;

    /// Of its toolbar item; unique among the panes.
    virtual QString identifier() const;

    virtual QString title() const;
    virtual QString tooltip() const; ///< Nobody asks for it: the panel takes the view's own toolTip().
    virtual QIcon image() const;

    // Around a change of pane, in this order: old will resign, new will become, old did resign, new did become.
    virtual void paneWillBecomeFront();
    virtual void paneDidBecomeFront();
    virtual void paneWillResignFront();
    virtual void paneDidResignFront();

    /// Brings the controls up to date with the defaults.
    virtual void updateControls();

    /// The action "itemChanged:" of the pane's controls.
    Q_INVOKABLE virtual void itemChanged(QObject *sender);

    /// What the panel's content becomes for this pane.
    QSize paneSize() const;

protected:
    /// The settings of the System on which the pane was made.
    platform::UserDefaults &defaults() const { return m_defaults; }

private:
    platform::UserDefaults &m_defaults;
};

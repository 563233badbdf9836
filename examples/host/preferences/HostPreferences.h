#pragma once

#include <QWUtilities/shell/QWPreferencesPanel.h>

namespace demo
{

/// The preferences of the host; its panes lie in "TinePreferences.ui".
class HostPreferences : public QWPreferencesPanel
{
    Q_OBJECT

public:
    HostPreferences();

    QString panelNibName() const override;
    QList<QWPreferencesPane *> panes() const override { return m_panes; }

    // Actions of the panes' controls.
    Q_INVOKABLE void itemChanged(QObject *control); ///< Goes to the pane that the control lies in.
    Q_INVOKABLE void openScrollWheelActions(QObject *sender);
    Q_INVOKABLE void openKeyboardShortcuts(QObject *sender);

protected:
    void nibDidLoad(platform::InterfaceFile &nib) override;

private:
    QList<QWPreferencesPane *> m_panes;
};

} // namespace demo

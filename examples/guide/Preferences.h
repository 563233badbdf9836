#pragma once

#include <QWUtilities/shell/QWPreferencesPanel.h>

class GeneralPane;

class Preferences : public QWPreferencesPanel
{
    Q_OBJECT

public:
    Preferences();

    QString panelNibName() const override { return "MyPreferences"; }
    QList<QWPreferencesPane *> panes() const override;

    Q_INVOKABLE void itemChanged(QObject *control); // actions of the file go to its owner, which is this

protected:
    void nibDidLoad(platform::InterfaceFile &nib) override;

private:
    GeneralPane *m_general = nullptr;
};

#pragma once

#include "KeptPane.h"

#include <QWPlatform/appkit/InterfaceFile.h>
#include <QWUtilities/shell/QWPreferencesPanel.h>

class KeptPreferences : public QWPreferencesPanel
{
    Q_OBJECT

public:
    KeptPreferences() { platform::InterfaceFile::registerClass<KeptPane>("KeptPane"); }

    QString panelNibName() const override { return "KeptPreferences"; }
    QList<QWPreferencesPane *> panes() const override { return {m_general}; }

protected:
    void nibDidLoad(platform::InterfaceFile &nib) override { nib.connectOutlet("general", m_general); }

private:
    KeptPane *m_general = nullptr;
};

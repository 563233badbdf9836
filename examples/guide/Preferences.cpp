#include "Preferences.h"

#include "GeneralPane.h"

#include <QWPlatform/appkit/InterfaceFile.h>

Preferences::Preferences()
{
    platform::InterfaceFile::registerClass<GeneralPane>("GeneralPane");
}

QList<QWPreferencesPane *> Preferences::panes() const
{
    return {m_general};
}

void Preferences::nibDidLoad(platform::InterfaceFile &nib)
{
    nib.connectOutlet("general", m_general);
}

void Preferences::itemChanged(QObject *control)
{
    m_general->itemChanged(control);
}

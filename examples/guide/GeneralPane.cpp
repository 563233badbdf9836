#include "GeneralPane.h"

#include <QWPlatform/foundation/UserDefaults.h>

#include <QCheckBox>

void GeneralPane::updateControls()
{
    findChild<QCheckBox *>("controllers")->setChecked(defaults().boolean("Use Controllers"));
}

void GeneralPane::itemChanged(QObject *sender)
{
    defaults().setObject("Use Controllers", qobject_cast<QCheckBox *>(sender)->isChecked());
}

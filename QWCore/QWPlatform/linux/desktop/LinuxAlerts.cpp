#include "LinuxAlerts.h"

#include "LinuxAlertPanel.h"

#include <QApplication>

namespace platform
{

int LinuxAlerts::run(const Alert &alert)
{
    if (!qobject_cast<QApplication *>(QCoreApplication::instance())) {
        qWarning("%s %s", qPrintable(alert.messageText), qPrintable(alert.informativeText));
        return 0;
    }
    LinuxAlertPanel panel(alert);
    return panel.run();
}

} // namespace platform

#include "FakeAlerts.h"

int FakeAlerts::run(const platform::Alert &alert)
{
    shown.append(alert.messageText);
    alerts.push_back(alert);
    if (whileShown)
        whileShown();
    if (answer)
        return answer(alert);
    if (m_answers.isEmpty())
        return 0;
    const QString title = m_answers.takeFirst();
    const auto index = alert.buttons.indexOf(title);
    if (index < 0)
        qFatal("The alert \"%s\" has no button \"%s\"", qPrintable(alert.messageText), qPrintable(title));
    return static_cast<int>(index);
}

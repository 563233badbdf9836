#include "TrialTrouble.h"

#include <QWPlatform/System.h>
#include <QWPlatform/appkit/Alerts.h>
#include <QWPlatform/foundation/Localization.h>

namespace qw
{

TrialTrouble &TrialTrouble::sharedInstance()
{
    return platform::System::current().shared<TrialTrouble>([] { return new TrialTrouble; });
}

void TrialTrouble::tell(const PluginFormat &format, const QString &explanation)
{
    if (m_teller && m_teller != &format)
        return;
    m_teller = &format;
    platform::runAlert({platform::localized("New plug-ins cannot be tried."), explanation, {}});
}

} // namespace qw

#include "WriteFailures.h"

#include <QWBase/QWError.h>
#include <QWPlatform/appkit/Alerts.h>
#include <QWPlatform/foundation/Localization.h>

#include <QLoggingCategory>

namespace qw
{

namespace
{
Q_LOGGING_CATEGORY(shortcutsLog, "quorwell.shortcuts")
} // namespace

void WriteFailures::tell(const QWError &error) const
{
    log(error);
    if (m_alerts)
        platform::runAlert({platform::localized("The keyboard shortcuts could not be saved."),
                            error.message() + ' ' + error.reason(),
                            {}});
}

void WriteFailures::log(const QWError &error)
{
    qCWarning(shortcutsLog, "%s %s", qPrintable(error.message()), qPrintable(error.reason()));
}

} // namespace qw

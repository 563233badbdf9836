#include "QWError.h"

#include <QWPlatform/appkit/Alerts.h>

QWError::QWError(QString message, QString reason)
    : m_message(std::move(message))
    , m_reason(std::move(reason))
{
}

void QWError::alert() const
{
    platform::runAlert({m_message, m_reason, {}});
}

#include "UnopenedAlert.h"

#include "QWPlatform/System.h"
#include "QWPlatform/appkit/Alerts.h"
#include "QWPlatform/foundation/Localization.h"

#include <QPointer>

#include <utility>

namespace platform
{

UnopenedAlert &UnopenedAlert::sharedInstance()
{
    return System::current().shared<UnopenedAlert>([] { return new UnopenedAlert; });
}

void UnopenedAlert::tell(const QString &name)
{
    if (std::exchange(m_isTelling, true))
        return;
    QMetaObject::invokeMethod(
        this, [this, name] { _show(name); }, Qt::QueuedConnection);
}

void UnopenedAlert::_show(const QString &name)
{
    const QPointer<UnopenedAlert> self(this);
    runAlert({formatted(localized("“%@” could not be opened."), {name}),
              localized("There is no program on this computer that opens it, or the program did not start."),
              {}});
    if (self)
        m_isTelling = false;
}

} // namespace platform

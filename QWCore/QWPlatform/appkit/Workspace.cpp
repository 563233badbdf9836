#include "Workspace.h"

#include "QWPlatform/System.h"
#include "QWPlatform/appkit/windows/UnopenedAlert.h"

#include <QUrl>

namespace platform
{

Workspace::~Workspace() = default;

void openUrlOrTell(const QUrl &url)
{
    if (!System::current().workspace().openUrl(url))
        UnopenedAlert::sharedInstance().tell(url.toDisplayString());
}

void openFileOrTell(const QString &path)
{
    if (!System::current().workspace().openFile(path))
        UnopenedAlert::sharedInstance().tell(path);
}

} // namespace platform

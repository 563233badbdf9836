#pragma once

#include "QWPlatform/appkit/Workspace.h"

#include <QWPlatform/qwplatform_private.h>

namespace platform
{

/// Hands addresses to the desktop's "xdg-open", and files to the programs of its entries, and does not wait for them.
class QWPLATFORM_TEST_EXPORT LinuxWorkspace : public Workspace
{
public:
    bool openUrl(const QUrl &url) override;
    bool openFile(const QString &path) override;
    bool openFileWithApplication(const QString &path, const QString &applicationName) override;
};

} // namespace platform

#pragma once

#include "QWPlatform/appkit/Workspace.h"

#include <QWPlatform/qwplatform_private.h>

namespace platform
{

/// Hands addresses to the desktop's "xdg-open" and does not wait for it.
class QWPLATFORM_TEST_EXPORT LinuxWorkspace : public Workspace
{
public:
    bool openUrl(const QUrl &url) override;
    bool openFile(const QString &path) override;
};

} // namespace platform

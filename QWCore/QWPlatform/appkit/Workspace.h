#pragma once

#include <QWPlatform/qwplatform_export.h>

class QString;
class QUrl;

namespace platform
{

/// The user's desktop. Main thread.
class QWPLATFORM_EXPORT Workspace
{
public:
    virtual ~Workspace();

    /// Opens @p url in the user's default application for it; false when there is none.
    virtual bool openUrl(const QUrl &url) = 0;

    /// Opens the file in the user's default application for it; false when there is none or no such file.
    virtual bool openFile(const QString &path) = 0;
};

} // namespace platform

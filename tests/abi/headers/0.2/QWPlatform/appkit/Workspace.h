#pragma once

#include <QWPlatform/qwplatform_export.h>

class QString;
class QUrl;

namespace platform
{

/// The user's desktop. Main thread. An alert tells of what turns out only later not to be opened.
class QWPLATFORM_EXPORT Workspace
{
public:
    virtual ~Workspace();

    /// Opens @p url in the user's default application for it; false when there is none.
    virtual bool openUrl(const QUrl &url) = 0;

    /// Opens the file in the user's default application for it; false when there is none or no such file.
    virtual bool openFile(const QString &path) = 0;

    /// Opens the file in the program of this name: in this application itself where it is its own, by the hook
    /// `Q_INVOKABLE bool openFile(const QString &path)` of the application object, else in the program of the desktop
    /// that the user's menus know by it. False when there is none, it does not take the file, or there is no such file.
    virtual bool openFileWithApplication(const QString &path, const QString &applicationName) = 0;
};

/// Opens @p url through the current System. Where no program does, an alert says so, later and one at a time.
QWPLATFORM_EXPORT void openUrlOrTell(const QUrl &url);

/// The same for a file.
QWPLATFORM_EXPORT void openFileOrTell(const QString &path);

} // namespace platform

#pragma once

#include <QWPlatform/appkit/Workspace.h>

#include <QStringList>
#include <QUrl>

/// Keeps what was opened.
class FakeWorkspace : public platform::Workspace
{
public:
    bool openUrl(const QUrl &url) override
    {
        openedUrls.append(url.toString());
        return succeeds;
    }

    bool openFile(const QString &path) override
    {
        openedFiles.append(path);
        return succeeds;
    }

    bool openFileWithApplication(const QString &path, const QString &applicationName) override
    {
        openedWith.append({path, applicationName});
        return succeeds;
    }

    QStringList openedUrls;
    QStringList openedFiles;                     ///< With their default application.
    QList<QPair<QString, QString>> openedWith{}; ///< Path and name of the application.
    bool succeeds = true;
};

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

    QStringList openedUrls;
    QStringList openedFiles;
    bool succeeds = true;
};

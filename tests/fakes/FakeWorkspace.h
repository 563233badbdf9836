#pragma once

#include <QWPlatform/appkit/Workspace.h>

#include <QStringList>
#include <QUrl>

#include <functional>

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
        return _opens();
    }

    bool openFileWithApplication(const QString &path, const QString &applicationName) override
    {
        openedWith.append({path, applicationName});
        return _opens();
    }

    QStringList openedUrls;
    QStringList openedFiles;                     ///< With their default application.
    QList<QPair<QString, QString>> openedWith{}; ///< Path and name of the application.
    bool succeeds = true;
    std::function<void()> whileOpening{}; ///< What a host of the file does in the call; may replace itself.

private:
    bool _opens() const
    {
        const bool result = succeeds;
        if (const auto act = whileOpening)
            act();
        return result; // the fake may have gone
    }
};

#pragma once

#include <QWPlatform/network/transfers/UrlDownload.h>

#include <QByteArray>
#include <QObject>

#include <vector>

/// Downloads that the test drives step by step. One whose URL cannot be loaded fails by itself, from the event loop.
class FakeUrlDownloads : public platform::UrlDownloads
{
public:
    struct Started
    {
        platform::UrlDownloadRequest request;
        QString path;           ///< Of the file, once it is there: with a free name where none may be overwritten.
        bool cancelled = false; ///< Or destroyed before its end.
        bool ended = false;
    };

    std::unique_ptr<platform::UrlDownload> start(const platform::UrlDownloadRequest &request,
                                                 platform::UrlDownloadObserver &observer) override;
    void cancelAll() override;

    /// Each of these acts on the download started last; nothing once that has ended or was cancelled.
    void respond(qint64 expectedLength);
    void receive(const QByteArray &data);
    void finish(); ///< Writes the file, into a folder that is there.
    void fail(const QString &localizedDescription);

    std::vector<std::shared_ptr<Started>> started;

private:
    bool _isRunning() const;
    void _fail(Started &download, platform::UrlDownloadObserver &observer, const QString &localizedDescription);

    platform::UrlDownloadObserver *m_observer = nullptr;
    QByteArray m_received;
    QObject m_loop; ///< Context of what comes from the event loop.
};

#pragma once

#include <QWPlatform/network/transfers/UrlDownload.h>

#include <QByteArray>
#include <QUrl>

#include <vector>

/// Downloads that the test drives step by step.
class FakeUrlDownloads : public platform::UrlDownloads
{
public:
    struct Started
    {
        QUrl url;
        QString destination;
        bool cancelled = false; ///< Or destroyed before its end.
        bool ended = false;
    };

    std::unique_ptr<platform::UrlDownload> start(const QUrl &url, const QString &destination,
                                                 platform::UrlDownloadObserver &observer) override;
    void cancelAll() override;

    /// Each of these acts on the download started last.
    void respond(qint64 expectedLength);
    void receive(const QByteArray &data);
    void finish();
    void fail(const QString &localizedDescription);

    std::vector<std::shared_ptr<Started>> started;

private:
    platform::UrlDownloadObserver *_running() const;

    platform::UrlDownloadObserver *m_observer = nullptr;
    QByteArray m_received;
};

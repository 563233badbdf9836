#pragma once

#include "../network/UrlDownload.h"

#include <QPointer>

#include <chrono>

class QNetworkAccessManager;

namespace platform
{

/// Streams answers to files. A file appears at its destination, in one step, once it is whole.
class QWPLATFORM_EXPORT LinuxUrlDownloads : public UrlDownloads
{
public:
    LinuxUrlDownloads();

    /// A download fails after @p inactivity without a byte.
    explicit LinuxUrlDownloads(std::chrono::milliseconds inactivity);
    ~LinuxUrlDownloads() override;

    std::unique_ptr<UrlDownload> start(const QUrl &url, const QString &destination,
                                       UrlDownloadObserver &observer) override;

private:
    QNetworkAccessManager &_manager();

    const std::chrono::milliseconds m_inactivity;
    QPointer<QNetworkAccessManager> m_network; ///< Made on first use; goes with the application object.
};

} // namespace platform

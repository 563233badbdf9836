#pragma once

#include "PartialFile.h"
#include "QWPlatform/network/transfers/UrlDownload.h"

#include <QWPlatform/qwplatform_private.h>

#include <QPointer>

#include <chrono>
#include <vector>

namespace platform
{

class LinuxUrlTransfer;

/// Streams answers to files, each on a thread of its own. A file appears at its destination, in one step, once it is
/// whole. A connection that is lost is made anew where the server can continue the file.
class QWPLATFORM_TEST_EXPORT LinuxUrlDownloads : public UrlDownloads
{
public:
    /// Beyond which a download fails.
    struct Limits
    {
        std::chrono::milliseconds inactivity = std::chrono::seconds(30);             ///< Without a byte.
        std::chrono::milliseconds inactivityAfterSilence = std::chrono::seconds(10); ///< From a server asked again.
        qint64 fileSize = largestFile;                                               ///< In bytes.
        PartialFile::Patience patience{};                         ///< With connections that are lost.
        std::chrono::milliseconds quit = std::chrono::seconds(3); ///< For a disk that hangs, at the end of all.
    };

    LinuxUrlDownloads();
    explicit LinuxUrlDownloads(const Limits &limits);
    ~LinuxUrlDownloads() override;

    std::unique_ptr<UrlDownload> start(const UrlDownloadRequest &request, UrlDownloadObserver &observer) override;
    void cancelAll() override;

private:
    const Limits m_limits;
    std::vector<QPointer<LinuxUrlTransfer>> m_transfers; ///< Those that have gone are null.
    bool m_cancelled = false;
};

} // namespace platform

#pragma once

#include "LinuxUrlDownloads.h"

#include <QThread>

#include <memory>

namespace platform
{

class DownloadReport;

/// The thread of one download; ends with it, or by quit().
class DownloadThread : public QThread
{
    Q_OBJECT

public:
    DownloadThread(UrlDownloadRequest request, const LinuxUrlDownloads::Limits &limits,
                   std::shared_ptr<DownloadReport> report);

protected:
    void run() override;

private:
    const UrlDownloadRequest m_request;
    const LinuxUrlDownloads::Limits m_limits;
    const std::shared_ptr<DownloadReport> m_report; ///< Kept for a thread that nobody waits for any more.
};

} // namespace platform

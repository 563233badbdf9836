#pragma once

#include "LinuxUrlDownloads.h"

#include <QThread>

namespace platform
{

class DownloadReport;

/// The thread of one download; ends with it, or by quit().
class DownloadThread : public QThread
{
    Q_OBJECT

public:
    /// @p report must live until the thread has finished.
    DownloadThread(UrlDownloadRequest request, const LinuxUrlDownloads::Limits &limits, DownloadReport &report);

protected:
    void run() override;

private:
    const UrlDownloadRequest m_request;
    const LinuxUrlDownloads::Limits m_limits;
    DownloadReport &m_report;
};

} // namespace platform

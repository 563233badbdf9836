#include "DownloadThread.h"

#include "DownloadReport.h"
#include "FileTransfer.h"

#include <utility>

namespace platform
{

DownloadThread::DownloadThread(UrlDownloadRequest request, const LinuxUrlDownloads::Limits &limits,
                               std::shared_ptr<DownloadReport> report)
    : m_request(std::move(request))
    , m_limits(limits)
    , m_report(std::move(report))
{
}

void DownloadThread::run()
{
    FileTransfer transfer(m_request, m_limits, m_report);
    connect(&transfer, &FileTransfer::ended, this, &QThread::quit, Qt::DirectConnection);
    // From the loop, so that an end at once finds one to end.
    QMetaObject::invokeMethod(&transfer, &FileTransfer::start, Qt::QueuedConnection);
    exec();
}

} // namespace platform

#include "UrlDownload.h"

namespace platform
{

UrlDownloadObserver::~UrlDownloadObserver() = default;
void UrlDownloadObserver::downloadDidReceiveResponse(qint64) {}
void UrlDownloadObserver::downloadDidReceiveDataOfLength(qint64) {}
void UrlDownloadObserver::downloadDidCreateDestination(const QString &) {}
void UrlDownloadObserver::downloadDidFinish() {}
void UrlDownloadObserver::downloadDidFailWithError(const QString &) {}

UrlDownload::~UrlDownload() = default;
UrlDownloads::~UrlDownloads() = default;

} // namespace platform

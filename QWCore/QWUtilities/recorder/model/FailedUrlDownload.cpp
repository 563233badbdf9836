#include "FailedUrlDownload.h"

#include <QMetaObject>

namespace qw
{

std::unique_ptr<platform::UrlDownload> FailedUrlDownload::make(const QString &localizedDescription,
                                                               platform::UrlDownloadObserver &observer)
{
    return std::make_unique<FailedUrlDownload>(localizedDescription, observer);
}

FailedUrlDownload::FailedUrlDownload(const QString &localizedDescription, platform::UrlDownloadObserver &observer)
    : m_pending(std::make_unique<QObject>())
{
    QMetaObject::invokeMethod(
        m_pending.get(), [&observer, localizedDescription] { observer.downloadDidFailWithError(localizedDescription); },
        Qt::QueuedConnection);
}

void FailedUrlDownload::cancel()
{
    m_pending.reset();
}

} // namespace qw
